# tests/faults/*.cpp make a program of its own, as it replaces malloc and the handlers of signals. On Windows it loads the DLL
# that stands beside it.

hedro34_sources(fault_test_sources tests/faults/*.cpp)
if(HEDRO34_FAULTS AND fault_test_sources)
  if(NOT WIN32)
    find_package(GTest REQUIRED)
  endif()
  include(GoogleTest)
  # A host's code, compiled without the flags of the library.
  set(without_flags ${PROJECT_SOURCE_DIR}/tests/faults/without_flags.cpp)
  list(REMOVE_ITEM fault_test_sources ${without_flags})
  add_library(hedro34_fault_host OBJECT ${without_flags})
  target_link_libraries(hedro34_fault_host PRIVATE hedro34_inside GTest::gtest)
  hedro34_warnings(hedro34_fault_host)

  add_executable(hedro34_fault_tests
    ${fault_test_sources} tests/support.cpp $<TARGET_OBJECTS:hedro34_fault_host>)
  target_link_libraries(hedro34_fault_tests PRIVATE hedro34_inside GTest::gtest)
  hedro34_warnings(hedro34_fault_tests)
  hedro34_fault_flags(hedro34_fault_tests)
  hedro34_in_order(${fault_test_sources})
  if(WIN32)
    target_sources(hedro34_fault_tests PRIVATE tests/process_windows.cpp)
    add_dependencies(hedro34_fault_tests hedro34_component)
  else()
    gtest_discover_tests(hedro34_fault_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES LABELS faults)
  endif()
endif()
