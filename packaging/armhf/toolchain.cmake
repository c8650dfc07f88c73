# Debian's cross compiler for armhf (hard float, ARMv7) with the libraries of a root that
# packaging/armhf/build fills: cmake -DCMAKE_TOOLCHAIN_FILE=packaging/armhf/toolchain.cmake
# -DQN740_ARMHF_ROOT=DIRECTORY
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QN740_ARMHF_ROOT)
set(CMAKE_FIND_ROOT_PATH ${QN740_ARMHF_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# The tools that generate sources (moc, rcc) run on this machine.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)

set(libraries ${QN740_ARMHF_ROOT}/usr/lib/arm-linux-gnueabihf)
# No notes on how older compilers passed arguments.
set(CMAKE_CXX_FLAGS_INIT "-Wno-psabi")
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-L${libraries} -Wl,-rpath-link,${libraries} -Wl,-rpath-link,${QN740_ARMHF_ROOT}/lib/arm-linux-gnueabihf")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L ${QN740_ARMHF_ROOT})
