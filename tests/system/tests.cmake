# qn740_system_test(CLASS [LIBRARY ...]) adds a test that starts the real programs.
function(qn740_system_test class)
    qn740_test(system ${class} ${ARGN})
    add_dependencies(tst_${class} qn740-sim qn740-panel)
    target_compile_definitions(tst_${class} PRIVATE
        QN740_SIM="$<TARGET_FILE:qn740-sim>" QN740_PANEL="$<TARGET_FILE:qn740-panel>")
endfunction()

qn740_test(system RfbClient)
qn740_test(system Screen)
qn740_system_test(Panel)
if(NOT QN740_SANITIZE)
    qn740_with_fake_frame_buffer(tst_Panel)
endif()
qn740_system_test(BareScreen)
# Qt's remote screen does not free all of its memory, see the file.
set_property(TEST ${QN740_TEST_PREFIX}.system.BareScreen ${QN740_TEST_PREFIX}.system.Panel
    APPEND PROPERTY ENVIRONMENT
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/soaking/lsan.supp:print_suppressions=0")
# The same touches on an upright screen of another size.
if(NOT QN740_SANITIZE)
    qn740_test_again(system BareScreen Turned
        "QN740_TEST_SCREEN=600x1024;QN740_SCALE=fit;QN740_ROTATION=90")
endif()
qn740_system_test(SimulatedScopes)
qn740_system_test(Simulator qn740_sim)
qn740_system_test(Recordings qn740_sim)
qn740_system_test(Editors)
qn740_system_test(Exits)
qn740_system_test(Service)
target_compile_definitions(tst_Service PRIVATE QN740_ROOT="${PROJECT_SOURCE_DIR}")
if(TARGET qn740-remote)
    qn740_system_test(Remote qn740_remote)
    add_dependencies(tst_Remote qn740-remote)
    target_compile_definitions(tst_Remote PRIVATE QN740_REMOTE="$<TARGET_FILE:qn740-remote>")
endif()
qn740_system_test(LinkModes)
if(NOT QN740_SANITIZE)
    qn740_with_file_call_faults(tst_LinkModes)
endif()
qn740_system_test(DisplayWorkflows)
qn740_system_test(UnitReacts)
qn740_system_test(GlassTellsTheTruth)
set_tests_properties(${QN740_TEST_PREFIX}.system.DisplayWorkflows PROPERTIES COST 100)
qn740_system_test(SimulatedCard)
qn740_test(system UnitMenus qn740_sim)
qn740_system_test(Pictures)
add_dependencies(tst_Pictures qn740-pictures)
target_compile_definitions(tst_Pictures PRIVATE
    QN740_PICTURES="$<TARGET_FILE:qn740-pictures>" QN740_ROOT="${PROJECT_SOURCE_DIR}")
qn740_test(system Measurements qn740_measure)
add_dependencies(tst_Measurements qn740-measure)
target_compile_definitions(tst_Measurements PRIVATE
    QN740_MEASURE="$<TARGET_FILE:qn740-measure>" QN740_ROOT="${PROJECT_SOURCE_DIR}")

qn740_test(system Try qn740_try)
add_dependencies(tst_Try qn740-try)
target_compile_definitions(tst_Try PRIVATE
    QN740_TRY="$<TARGET_FILE:qn740-try>" QN740_ROOT="${PROJECT_SOURCE_DIR}")
# The operator's workflows, as scenarios.
add_test(NAME ${QN740_TEST_PREFIX}.system.Scenarios
    COMMAND qn740-try --out ${PROJECT_BINARY_DIR}/try-out ${PROJECT_SOURCE_DIR}/tests/scenarios)
set_tests_properties(${QN740_TEST_PREFIX}.system.Scenarios PROPERTIES TIMEOUT 300)

qn740_test(system MenuPaper qn740_paper)
add_dependencies(tst_MenuPaper qn740-pictures)
target_compile_definitions(tst_MenuPaper PRIVATE QN740_PICTURES="$<TARGET_FILE:qn740-pictures>")

# Thousands of widgets and millions of characters: too slow under sanitizers.
if(NOT QN740_SANITIZE)
    qn740_test(system Limits)
endif()
