# tests/*.cpp make one GoogleTest program, which scripts/test-windows runs where it is one for Windows. Elsewhere each
# tests/*.sh and tests/*_test.py is one test more, skipped where it exits with 77. Scripts find the sources in
# HEDRO34_SOURCE_DIR and the program in HEDRO34_PROGRAM, the component library in HEDRO34_COMPONENT, and in HEDRO34_MANUAL what
# writes the program's manual page and completions.

hedro34_sources(test_sources tests/*.cpp)
if(test_sources)
  if(NOT WIN32)
    find_package(GTest REQUIRED)
  endif()
  include(GoogleTest)
  # A component library that the tests create objects from.
  add_library(hedro34_test_component MODULE tests/component/component.cpp)
  target_include_directories(hedro34_test_component PRIVATE ${PROJECT_SOURCE_DIR})
  set_target_properties(hedro34_test_component PROPERTIES CXX_VISIBILITY_PRESET hidden)
  if(WIN32)
    target_sources(hedro34_test_component PRIVATE tests/component/exports.def)
    target_link_options(hedro34_test_component PRIVATE -Wl,--enable-stdcall-fixup)
  endif()
  hedro34_warnings(hedro34_test_component)

  add_executable(hedro34_tests ${test_sources})
  set_source_files_properties(tests/class_registry_posix_test.cpp tests/class_registry_windows_test.cpp PROPERTIES
    COMPILE_DEFINITIONS HEDRO34_TEST_COMPONENT="$<TARGET_FILE:hedro34_test_component>")
  set_source_files_properties(tests/component_binary_test.cpp tests/component_windows_test.cpp PROPERTIES
    COMPILE_DEFINITIONS HEDRO34_COMPONENT="$<TARGET_FILE:hedro34_component>")
  add_dependencies(hedro34_tests hedro34_component hedro34_test_component)
  target_link_libraries(hedro34_tests PRIVATE
    hedro34_inside EXPAT::EXPAT nlohmann_json::nlohmann_json GTest::gmock_main)
  hedro34_warnings(hedro34_tests)
  if(CMAKE_CXX_FLAGS_DEBUG MATCHES "-fsanitize=")
    # The library is what a sanitizer is to see as it runs; the tests compile in half the time without optimisation.
    target_compile_options(hedro34_tests PRIVATE $<$<CONFIG:Debug>:-O0$<SEMICOLON>-g1>)
  endif()
  if(WIN32)
    # They run as one: to start a program costs more there than a test.
    target_compile_options(hedro34_tests PRIVATE -O0)
  else()
    gtest_discover_tests(hedro34_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60)
  endif()

endif()

# What follows asks for programs of this system.
if(WIN32)
  return()
endif()

# What lets memory run out in a program, on cue.
add_library(hedro34_preloaded MODULE tests/torture/preloaded.cpp)
target_compile_options(hedro34_preloaded PRIVATE -O2 -fno-sanitize=all)
target_link_options(hedro34_preloaded PRIVATE -fno-sanitize=all)
hedro34_warnings(hedro34_preloaded)

# The programs of the deep tests, each built when its test asks for it.
hedro34_sources(deep_sources tests/deep/*.cpp)
foreach(source IN LISTS deep_sources)
  cmake_path(GET source STEM name)
  set(target hedro34_deep_${name})
  add_executable(${target} EXCLUDE_FROM_ALL ${source} tests/support.cpp tests/process_posix.cpp)
  set_source_files_properties(${source} PROPERTIES COMPILE_DEFINITIONS HEDRO34_COMPONENT="$<TARGET_FILE:hedro34_component>")
  add_dependencies(${target} hedro34_component)
  target_link_libraries(${target} PRIVATE hedro34_inside EXPAT::EXPAT GTest::gtest_main)
  hedro34_warnings(${target})
endforeach()

set(script_environment HEDRO34_SOURCE_DIR=${PROJECT_SOURCE_DIR} PYTHONDONTWRITEBYTECODE=1
    HEDRO34_COMPONENT=$<TARGET_FILE:hedro34_component> HEDRO34_TABLES=$<TARGET_FILE:hedro34_tables>)
if(TARGET hedro34)
  list(APPEND script_environment HEDRO34_PROGRAM=$<TARGET_FILE:hedro34> HEDRO34_MANUAL=$<TARGET_FILE:hedro34_manual>)
endif()

# What it takes to build a program elsewhere as this one is built.
string(TOUPPER "${CMAKE_BUILD_TYPE}" build_type)
list(APPEND script_environment HEDRO34_CMAKE=${CMAKE_COMMAND} HEDRO34_BUILD=${PROJECT_BINARY_DIR}
     HEDRO34_COMPILER=${CMAKE_CXX_COMPILER} "HEDRO34_FLAGS=${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${build_type}}")

function(hedro34_script_tests pattern interpreter)
  hedro34_sources(scripts ${pattern})
  foreach(script IN LISTS scripts)
    cmake_path(GET script STEM name)
    add_test(NAME ${name} COMMAND ${interpreter} ${script})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${script_environment}" SKIP_RETURN_CODE 77)
  endforeach()
endfunction()

find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(BASH_PROGRAM bash REQUIRED)
mark_as_advanced(BASH_PROGRAM)
hedro34_script_tests(tests/*_test.py ${Python3_EXECUTABLE})
hedro34_script_tests(tests/*.sh ${BASH_PROGRAM})

# The client in Python, with the component library. A library with sanitizers needs theirs in the process from its start.
set(client_environment ${script_environment} HEDRO34_LIBRARY=$<TARGET_FILE:hedro34_component>
    PYTHONPATH=${PROJECT_SOURCE_DIR}/clients/python)
if(CMAKE_CXX_FLAGS_DEBUG MATCHES "-fsanitize=address" AND CMAKE_BUILD_TYPE STREQUAL Debug)
  foreach(library asan stdc++)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=lib${library}.so OUTPUT_VARIABLE preloaded_${library}
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
  endforeach()
  # The interpreter keeps memory to its end, so leaks are looked for by the references and objects that the tests count.
  list(APPEND client_environment LD_PRELOAD=${preloaded_asan}:${preloaded_stdc++}
       ASAN_OPTIONS=detect_leaks=0)
endif()
add_test(NAME python_client COMMAND ${Python3_EXECUTABLE} -m unittest discover -s ${PROJECT_SOURCE_DIR}/clients/python/tests)
set_tests_properties(python_client PROPERTIES ENVIRONMENT "${client_environment}" LABELS component)

# The example of the README: built, and run where its outputs do no harm.
add_executable(example_merge examples/merge.cpp)
target_link_libraries(example_merge PRIVATE HEDRO34::hedro34)
hedro34_warnings(example_merge)
set(example_folder ${PROJECT_BINARY_DIR}/example)
file(MAKE_DIRECTORY ${example_folder})
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/examples ${example_folder}/examples SYMBOLIC)
add_test(NAME example_merge COMMAND example_merge WORKING_DIRECTORY ${example_folder})
