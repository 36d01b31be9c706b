# tests/*.cpp make one GoogleTest program; each tests/*.sh and tests/*_test.py is one test more. Scripts find the
# sources in HEDRO34_SOURCE_DIR and the program in HEDRO34_PROGRAM.

hedro34_sources(test_sources tests/*.cpp)
if(test_sources)
  find_package(GTest REQUIRED)
  include(GoogleTest)
  add_executable(hedro34_tests ${test_sources})
  target_compile_definitions(hedro34_tests PRIVATE HEDRO34_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  target_link_libraries(hedro34_tests PRIVATE
    HEDRO34::hedro34 EXPAT::EXPAT nlohmann_json::nlohmann_json GTest::gmock_main)
  hedro34_warnings(hedro34_tests)
  gtest_discover_tests(hedro34_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60)
endif()

set(script_environment HEDRO34_SOURCE_DIR=${PROJECT_SOURCE_DIR} PYTHONDONTWRITEBYTECODE=1)
if(TARGET hedro34)
  list(APPEND script_environment HEDRO34_PROGRAM=$<TARGET_FILE:hedro34>)
endif()

function(hedro34_script_tests pattern interpreter)
  hedro34_sources(scripts ${pattern})
  foreach(script IN LISTS scripts)
    cmake_path(GET script STEM name)
    add_test(NAME ${name} COMMAND ${interpreter} ${script})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${script_environment}")
  endforeach()
endfunction()

find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(BASH_PROGRAM bash REQUIRED)
mark_as_advanced(BASH_PROGRAM)
hedro34_script_tests(tests/*_test.py ${Python3_EXECUTABLE})
hedro34_script_tests(tests/*.sh ${BASH_PROGRAM})

# The example of the README: built, and run where its outputs do no harm.
add_executable(example_merge examples/merge.cpp)
target_link_libraries(example_merge PRIVATE HEDRO34::hedro34)
hedro34_warnings(example_merge)
set(example_folder ${PROJECT_BINARY_DIR}/example)
file(MAKE_DIRECTORY ${example_folder})
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/examples ${example_folder}/examples SYMBOLIC)
add_test(NAME example_merge COMMAND example_merge WORKING_DIRECTORY ${example_folder})
