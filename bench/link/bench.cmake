qn740_bench(link FrameCutter)
