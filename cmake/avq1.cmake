# One folder of src/ is one static library; LINKS is the dependency rule that tools/check_layers
# compares with the includes. Headers are named from src/: #include "navdb/nearby.h".
function(avq1_library name)
  cmake_parse_arguments(LIB "" "" "LINKS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "/(linux|cairo|painter)/")
  else()
    list(FILTER sources EXCLUDE REGEX "/(win32|gdiplus|painter)/")
  endif()
  if(NOT sources)  # a folder of headers only
    set(sources ${CMAKE_CURRENT_BINARY_DIR}/headers_only.cpp)
    file(CONFIGURE OUTPUT ${sources} CONTENT "")  # unchanged while it stays the same
  endif()
  add_library(avq1_${name} STATIC ${sources})
  target_include_directories(avq1_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  foreach(link ${LIB_LINKS})
    target_link_libraries(avq1_${name} PUBLIC avq1_${link})
  endforeach()
endfunction()

# One folder of tests/ is one test program, linked with the libraries it exercises.
function(avq1_test name)
  cmake_parse_arguments(TEST "" "" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests ${PROJECT_SOURCE_DIR})
  target_compile_definitions(test_${name} PRIVATE
    AVQ1_SOURCE_DIR="${PROJECT_SOURCE_DIR}" AVQ1_BINARY_DIR="${CMAKE_BINARY_DIR}")
  # The libraries are tested as they ship; the tests' own code compiles in half the time unoptimised,
  # and GCC's optimiser does not warn of what cannot be in it.
  target_compile_options(test_${name} PRIVATE $<$<CONFIG:Release>:-O0>)
  target_link_libraries(test_${name} PRIVATE ${TEST_LINKS} GTest::gtest_main GTest::gmock)
  if(TARGET test_base AND NOT name STREQUAL base)  # parsed once for all test programs
    target_precompile_headers(test_${name} REUSE_FROM test_base)
  else()
    target_precompile_headers(test_${name} PRIVATE <gtest/gtest.h> <string> <vector>)
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60)
endfunction()
