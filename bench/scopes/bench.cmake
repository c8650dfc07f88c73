qn740_bench(scopes Scopes)
qn740_bench(scopes EnlargedScope qn740_sim)
