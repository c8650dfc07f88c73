qn740_test(touch FittedLabel)
qn740_test(touch TextButton)
