qn740_test(menus Key)
qn740_test(menus KeyPress)
