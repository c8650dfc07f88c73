qn740_test(wire Message)
qn740_test(wire SerialLine)
qn740_test(wire SpanTable)
qn740_test(wire Trace)
