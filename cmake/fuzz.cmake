# Each fuzz/NAME.cpp defines LLVMFuzzerTestOneInput; its seeds are the files of fuzz/corpus/NAME. With HEDRO34_FUZZ the
# program fuzz_NAME is a fuzzer that starts from the seeds and keeps what it finds in the build tree; without, any
# compiler builds it to replay the seeds once.

hedro34_sources(fuzz_sources fuzz/*.cpp)
foreach(source IN LISTS fuzz_sources)
  cmake_path(GET source STEM name)
  set(target fuzz_${name})
  set(seeds ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
  add_executable(${target} ${source})
  target_link_libraries(${target} PRIVATE hedro34_inside)
  hedro34_warnings(${target})
  if(HEDRO34_FUZZ)
    set(found ${PROJECT_BINARY_DIR}/corpus/${name})
    file(MAKE_DIRECTORY ${found})
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    add_test(NAME ${target} COMMAND ${target} -max_total_time=${HEDRO34_FUZZ_SECONDS} ${found} ${seeds})
  else()
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/replay/main.cpp)
    add_test(NAME ${target} COMMAND ${target} ${seeds})
  endif()
endforeach()
