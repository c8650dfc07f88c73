# Adds the programs of this directory to another checkout, whose CMakeLists.txt is left as it is:
#   cmake -S CHECKOUT -B BUILD -DCMAKE_PROJECT_INCLUDE=bench/other.cmake -DQN740_BUILD_BENCH=OFF
cmake_language(DEFER CALL add_subdirectory "${CMAKE_CURRENT_LIST_DIR}" "${PROJECT_BINARY_DIR}/bench-here")
