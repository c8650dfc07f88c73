qn740_test(link LinkModeDialog)
qn740_test(link MessageBoxes)
