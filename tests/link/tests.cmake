qn740_test(link FrameCutter)
qn740_test(link LinkMode)
qn740_test(link keySerial)
