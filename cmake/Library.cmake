# hw_library(NAME DEPENDS...): one static library from the .cpp files of this folder. What it may link is what it may
# include: the list of dependencies is the layer rule, and scripts/check-layers holds the includes to it at each build.
function(hw_library name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARGN} PRIVATE hw_warnings)
    add_dependencies(${name} hw_check_layers)
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} INTERFACE ${ARGN})
  endif()
endfunction()

# hw_test(FOLDER DEPENDS...): one GoogleTest executable from tests/FOLDER/*_test.cpp.
function(hw_test folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*_test.cpp)
  if(NOT sources)
    return()
  endif()
  string(REPLACE "/" "_" suffix ${folder})
  add_executable(hw_test_${suffix} ${sources})
  target_link_libraries(hw_test_${suffix} PRIVATE ${ARGN} hw_test_support hw_warnings GTest::gmock_main)
  # GCC 12 sees overruns in std::string's own copying when it inlines the tables of a test at -O3.
  target_compile_options(hw_test_${suffix} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
  target_precompile_headers(hw_test_${suffix} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
  gtest_discover_tests(hw_test_${suffix} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120 LABELS unit)
endfunction()

add_custom_target(hw_check_layers
  COMMAND ${PROJECT_SOURCE_DIR}/scripts/check-layers ${PROJECT_SOURCE_DIR}
  COMMENT "Checking includes against the layers")
