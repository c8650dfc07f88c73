qn740_test(touch LineColors)
