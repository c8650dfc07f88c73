qn740_test(touch FittedLabel)
qn740_test(touch LineColors)
qn740_test(touch TextButton)
