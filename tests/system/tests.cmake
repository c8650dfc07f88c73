qn740_test(system RfbClient)
qn740_test(system Simulator qn740_sim)
add_dependencies(tst_Simulator qn740-sim)
target_compile_definitions(tst_Simulator PRIVATE QN740_SIM="$<TARGET_FILE:qn740-sim>")
