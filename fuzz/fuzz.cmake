# qn740-fuzz: one program for all fuzz targets, so that it is linked once. The targets themselves are
# not instrumented: what counts is which branches of the library an input reaches. Included from
# tests/CMakeLists.txt, whose flags and precompiled header they share.
set(fuzz_folder ${PROJECT_SOURCE_DIR}/fuzz)
add_executable(qn740-fuzz
    ${fuzz_folder}/Dictionary.cpp
    ${fuzz_folder}/LivePanel.cpp
    ${fuzz_folder}/Script.cpp
    ${fuzz_folder}/Targets.cpp
    ${fuzz_folder}/main.cpp
    ${fuzz_folder}/targets/bus.cpp
    ${fuzz_folder}/targets/entry.cpp
    ${fuzz_folder}/targets/frames.cpp
    ${fuzz_folder}/targets/key.cpp
    ${fuzz_folder}/targets/link.cpp
    ${fuzz_folder}/targets/menufile.cpp
    ${fuzz_folder}/targets/readers.cpp
    ${fuzz_folder}/targets/recording.cpp
    ${fuzz_folder}/targets/scenario.cpp
    ${fuzz_folder}/targets/scope.cpp
)
target_include_directories(qn740-fuzz PRIVATE ${fuzz_folder})
target_link_libraries(qn740-fuzz PRIVATE qn740_testsupport qn740_try qn740_sim qn740_options)
target_link_options(qn740-fuzz PRIVATE -fsanitize=fuzzer)
if(QN740_PCH)
    target_precompile_headers(qn740-fuzz REUSE_FROM qn740_testsupport)
endif()

# The inputs that are kept, then new ones for a moment.
foreach(target bus entry frames iq json key link menufile readers recording scenario sdi)
    set(seconds 1)
    if(target MATCHES "key|link")
        set(seconds 3) # With a screen each input takes longer.
    endif()
    set(name ${QN740_TEST_PREFIX}.fuzz.${target})
    add_test(NAME ${name} COMMAND ${fuzz_folder}/run --program $<TARGET_FILE:qn740-fuzz> --fresh
        --seconds ${seconds} ${target})
    set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endforeach()
