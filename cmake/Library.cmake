# The standard library's headers, precompiled once for all libraries: most of the time of a small file goes into them.
# clang-tidy reads the files without it.
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/headers.cpp CONTENT "")
add_library(hw_headers STATIC ${PROJECT_BINARY_DIR}/headers.cpp)
target_link_libraries(hw_headers PRIVATE hw_warnings hw_hardening Threads::Threads)
target_precompile_headers(hw_headers PRIVATE
  <algorithm> <array> <atomic> <chrono> <cstdint> <cstdio> <cstdlib> <cstring> <functional> <map> <memory> <mutex>
  <optional> <span> <string> <string_view> <unordered_map> <utility> <variant> <vector>)

# hw_library(NAME [MAIN FILE] DEPENDS...): one static library from the .cpp files of this folder, without the file of a
# program's main. What it links is what it may include: the list of dependencies is the layer rule, and
# scripts/check-layers, which reads the lists, holds the includes to it at each build.
function(hw_library name)
  cmake_parse_arguments(arg "" MAIN "" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(arg_MAIN)
    list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/${arg_MAIN})
  endif()
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${arg_UNPARSED_ARGUMENTS} PRIVATE hw_warnings hw_hardening)
    target_precompile_headers(${name} REUSE_FROM hw_headers)
    add_dependencies(${name} hw_check_layers)
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} INTERFACE ${arg_UNPARSED_ARGUMENTS})
  endif()
endfunction()

# Tests are compiled for the speed of compiling, and share one precompiled header.
add_library(hw_test_options INTERFACE)
target_compile_options(hw_test_options INTERFACE -O0 -U_FORTIFY_SOURCE -fPIE)
# Files compiled as one take each other's fixtures for a header's, and see each other's names.
if(CMAKE_UNITY_BUILD)
  target_compile_options(hw_test_options INTERFACE -Wno-subobject-linkage -Wno-shadow)
endif()
# The product is what the sanitizers watch: checks in the tests' own code would triple the time of compiling them. Threads
# are another matter, both sides of a race must be seen.
if(HWAGENT_SANITIZE MATCHES address)
  target_compile_options(hw_test_options INTERFACE -fno-sanitize=all)
endif()

# hw_test(FOLDER DEPENDS...): one GoogleTest executable from tests/FOLDER/*_test.cpp.
function(hw_test folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*_test.cpp)
  if(NOT sources)
    return()
  endif()
  string(REPLACE "/" "_" suffix ${folder})
  add_executable(hw_test_${suffix} ${sources})
  target_link_libraries(hw_test_${suffix} PRIVATE ${ARGN} hw_test_support hw_warnings hw_test_options GTest::gmock_main)
  target_precompile_headers(hw_test_${suffix} REUSE_FROM hw_test_headers)
  gtest_discover_tests(hw_test_${suffix} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120 LABELS unit)
endfunction()

add_custom_target(hw_check_layers
  COMMAND ${PROJECT_SOURCE_DIR}/scripts/check-layers ${PROJECT_SOURCE_DIR}
  COMMENT "Checking includes against the layers")

# hw_program(NAME DEPENDS...): one program from the .cpp files of this folder; the list is its layer rule too.
function(hw_program name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARGN} hw_warnings hw_hardening)
  add_dependencies(${name} hw_check_layers)
endfunction()
