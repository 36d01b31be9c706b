# What scripts/test-windows runs beside the tests of tests.cmake: a host that is compiled against the interface definition alone.

set(host_header ${PROJECT_BINARY_DIR}/windows-host/HEDRO34_h.h)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/windows-host)
add_custom_command(OUTPUT ${host_header}
  COMMAND ${WIDL_PROGRAM} -h -I/usr/include/wine/wine/windows -o ${host_header} ${definition}
  DEPENDS ${definition} VERBATIM)
add_executable(hedro34_windows_host tests/windows/host.cpp ${host_header})
target_include_directories(hedro34_windows_host SYSTEM PRIVATE ${PROJECT_BINARY_DIR}/windows-host)
target_link_libraries(hedro34_windows_host PRIVATE ole32 oleaut32 uuid)
target_link_options(hedro34_windows_host PRIVATE -municode)
hedro34_warnings(hedro34_windows_host)
