qn740_test(menus Key)
