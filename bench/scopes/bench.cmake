qn740_bench(scopes Scopes)
qn740_bench(scopes PanelCpu)
