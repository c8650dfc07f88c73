qn740_test(menus Key)
qn740_test(menus KeyPressLists)
qn740_test(menus ListGrid)
