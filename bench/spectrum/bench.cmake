qn740_bench(spectrum ReplyBuffer)
qn740_bench(spectrum SpectrumChart)
qn740_bench(spectrum EnlargedChart)
