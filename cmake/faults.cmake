# Native faults become failures where an instruction may throw: g++ for x86-64 Linux and for Windows, without a sanitizer,
# which watches the same faults, and without gcov, for which each such instruction would be a branch. HEDRO34_FAULTS says whether
# this build does it; the sources ask for the definition of the same name.

string(TOUPPER "${CMAKE_BUILD_TYPE}" build_type)
set(HEDRO34_FAULTS OFF)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU
   AND (WIN32 OR (CMAKE_SYSTEM_NAME STREQUAL Linux AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|AMD64)$"))
   AND NOT "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${build_type}}" MATCHES "-fsanitize=|--coverage")
  set(HEDRO34_FAULTS ON)
endif()

# For code whose own instructions may fault inside an operation.
function(hedro34_fault_flags target)
  if(HEDRO34_FAULTS)
    target_compile_options(${target} PRIVATE -fnon-call-exceptions -fasynchronous-unwind-tables)
    target_compile_definitions(${target} PRIVATE HEDRO34_FAULTS)
  endif()
endfunction()

# For the operations themselves: the scheduler would move stores across an instruction that throws out of its function, and a
# result would not stand as the statements before the fault left it.
function(hedro34_in_order)
  if(HEDRO34_FAULTS)
    set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS -fno-schedule-insns -fno-schedule-insns2)
  endif()
endfunction()

# The reader of JSON is one loop over bytes, a twentieth slower where each access may throw, so it does without. (Not by
# -fno-non-call-exceptions, which in g++ 12 takes -fexceptions away as well.)
if(HEDRO34_FAULTS)
  set(sources ${library_sources})
  list(REMOVE_ITEM sources ${PROJECT_SOURCE_DIR}/hedro34/json/json_reader.cpp)
  set_property(SOURCE ${sources} APPEND PROPERTY COMPILE_OPTIONS -fnon-call-exceptions -fasynchronous-unwind-tables)
  target_compile_definitions(hedro34_library PRIVATE HEDRO34_FAULTS)
endif()
foreach(room runtime model import merge component)
  hedro34_sources(sources hedro34/${room}/*.cpp)
  hedro34_in_order(${sources})
endforeach()
