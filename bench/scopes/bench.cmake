qn740_bench(scopes Scopes)
