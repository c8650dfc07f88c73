# What makes an error in the programs end them, instead of letting it be used to take them over.
# scripts/check-hardening reads the built programs and fails when one of these is missing. Nothing of
# it reaches a project that uses the library.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# What only some processors have is left out on the others.
set(QN740_HARDENED_COMPILE)
foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
    string(MAKE_C_IDENTIFIER "QN740_HAS${flag}" has)
    check_cxx_compiler_flag(${flag} ${has})
    if(${has})
        list(APPEND QN740_HARDENED_COMPILE ${flag})
    endif()
endforeach()
# The checked versions of memcpy and others need an optimised build.
list(APPEND QN740_HARDENED_COMPILE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)

set(QN740_HARDENED_LINK)
foreach(flag -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--as-needed)
    string(MAKE_C_IDENTIFIER "QN740_LINKS${flag}" has)
    check_linker_flag(CXX ${flag} ${has})
    if(${has})
        list(APPEND QN740_HARDENED_LINK ${flag})
    endif()
endforeach()

# qn740_harden(TARGET ...): for the libraries and programs that are used. Test programs are not
# optimised, debug builds are for the debugger, and sanitizers do more than this.
function(qn740_harden)
    if(QN740_SANITIZE OR NOT PROJECT_IS_TOP_LEVEL)
        return()
    endif()
    set(optimised "$<NOT:$<OR:$<CONFIG:Debug>,$<CONFIG:>>>")
    foreach(target IN LISTS ARGN)
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
        foreach(flag IN LISTS QN740_HARDENED_COMPILE)
            target_compile_options(${target} PRIVATE "$<${optimised}:${flag}>")
        endforeach()
        get_target_property(type ${target} TYPE)
        if(type STREQUAL "EXECUTABLE")
            target_link_options(${target} PRIVATE ${QN740_HARDENED_LINK})
        endif()
    endforeach()
endfunction()
