# tests/faults/*.cpp make a program of its own, as it replaces malloc and the handlers of signals.

hedro34_sources(fault_test_sources tests/faults/*.cpp)
if(HEDRO34_FAULTS AND fault_test_sources)
  find_package(GTest REQUIRED)
  include(GoogleTest)
  add_executable(hedro34_fault_tests ${fault_test_sources})
  target_link_libraries(hedro34_fault_tests PRIVATE HEDRO34::hedro34 GTest::gtest)
  hedro34_warnings(hedro34_fault_tests)
  hedro34_fault_flags(hedro34_fault_tests)
  set_source_files_properties(tests/faults/without_flags.cpp PROPERTIES
    COMPILE_OPTIONS "-fno-non-call-exceptions;-fexceptions")
  gtest_discover_tests(hedro34_fault_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES LABELS faults)
endif()
