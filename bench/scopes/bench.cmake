qn740_bench(scopes Scopes)
qn740_bench(scopes EnlargedScope qn740_sim)
if(TARGET qn740_testsupport)
    qn740_bench(scopes PanelCpu qn740_testsupport)
    add_dependencies(bench_PanelCpu qn740-panel qn740-sim)
    target_compile_definitions(bench_PanelCpu PRIVATE
        QN740_PANEL="$<TARGET_FILE:qn740-panel>" QN740_SIM="$<TARGET_FILE:qn740-sim>"
        QN740_SCREEN="${PROJECT_SOURCE_DIR}/tests/support/screen.json")
endif()
