# The options of every target of this project. Nothing of them reaches a project that uses the library.
add_library(qn740_options INTERFACE)
target_compile_definitions(qn740_options INTERFACE
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_URL_CAST_FROM_STRING
)
target_compile_options(qn740_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # What GCC does not count to the warnings above: signs, and macros of Qt without arguments.
    target_compile_options(qn740_options INTERFACE -Wno-sign-conversion -Wno-overloaded-virtual
        -Wno-gnu-zero-variadic-macro-arguments)
endif()
if(QN740_WERROR)
    target_compile_options(qn740_options INTERFACE -Werror)
endif()
if(QN740_SANITIZE)
    # For the directory, so that a directory below it can switch some of it off.
    add_compile_options(-O1 -g1 -fno-omit-frame-pointer -fsanitize=address,undefined
        -fno-sanitize-recover=undefined)
    add_compile_definitions(QN740_SANITIZED) # Each compiler has a macro of its own for this.
    add_link_options(-fsanitize=address,undefined)
endif()
if(QN740_COVERAGE)
    # The sources themselves get the flag in src/, so that tests and simulator are built without it.
    add_link_options(--coverage)
endif()
if(QN740_FUZZ)
    # Counts which branches run, and shows the fuzzer what is compared with what.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# qn740_precompile(TARGET HEADER ...): precompiles the headers for the target where that is wanted.
function(qn740_precompile target)
    if(QN740_PCH)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# qn740_precompiled_like(TARGET OTHER): the same headers as OTHER, which has the same flags but where
# lines are counted, which is done in src/ only.
function(qn740_precompiled_like target other)
    if(QN740_PCH AND NOT QN740_COVERAGE)
        target_precompile_headers(${target} REUSE_FROM ${other})
    endif()
endfunction()
