qn740_test(menus GroupCells)
qn740_test(menus ImmediateKey)
qn740_test(menus Key)
qn740_test(menus MainMenus)
