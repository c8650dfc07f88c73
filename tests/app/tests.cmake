qn740_test(app Dispatcher)
qn740_test(app MainWindow)
qn740_test(app SetGov)
qn740_test(app Views)
