# The program hedro34; its manual page and its completions come from its own list of commands and options.

hedro34_sources(host_sources host/*.cpp)
if(NOT WIN32)
  hedro34_package(CLI11 libcli11-dev CLI11::CLI11 " or give -DHEDRO34_BUILD_PROGRAM=OFF")
  # How many columns a character takes in a terminal: a table of Unicode's, kept by those who follow it. It brings no file for
  # CMake.
  find_path(UTF8PROC_INCLUDE utf8proc.h)
  find_library(UTF8PROC_LIBRARY utf8proc)
  mark_as_advanced(UTF8PROC_INCLUDE UTF8PROC_LIBRARY)
  if(NOT UTF8PROC_INCLUDE OR NOT UTF8PROC_LIBRARY)
    hedro34_missing(utf8proc libutf8proc-dev " or give -DHEDRO34_BUILD_PROGRAM=OFF")
  endif()
  add_library(hedro34_utf8proc UNKNOWN IMPORTED)
  set_target_properties(hedro34_utf8proc PROPERTIES
    IMPORTED_LOCATION ${UTF8PROC_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${UTF8PROC_INCLUDE})
endif()
set(host_main ${PROJECT_SOURCE_DIR}/host/main.cpp)
list(REMOVE_ITEM host_sources ${host_main})
add_library(hedro34_host OBJECT ${host_sources})  # a test and the manual page link them as well
target_link_libraries(hedro34_host PRIVATE hedro34_inside CLI11::CLI11 hedro34_utf8proc)
hedro34_warnings(hedro34_host)
add_executable(hedro34 ${host_main} $<TARGET_OBJECTS:hedro34_host>)
target_link_libraries(hedro34 PRIVATE hedro34_inside hedro34_utf8proc)
if(WIN32)
  hedro34_resources(hedro34 "HEDRO34 program")
endif()
hedro34_warnings(hedro34)

if(NOT WIN32)
  # `hedro34_manual man|bash|zsh|fish`
  hedro34_sources(manual_sources tools/manual/*.cpp)
  add_executable(hedro34_manual ${manual_sources} $<TARGET_OBJECTS:hedro34_host>)
  target_link_libraries(hedro34_manual PRIVATE hedro34_inside CLI11::CLI11 hedro34_utf8proc)
  hedro34_warnings(hedro34_manual)
  set(manual_folder ${PROJECT_BINARY_DIR}/manual)
  set(manual_files)
  foreach(kind_and_file man:hedro34.1 bash:hedro34.bash zsh:_hedro34 fish:hedro34.fish)
    string(REPLACE : ";" kind_and_file ${kind_and_file})
    list(GET kind_and_file 0 kind)
    list(GET kind_and_file 1 file)
    add_custom_command(OUTPUT ${manual_folder}/${file}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${manual_folder}
      COMMAND hedro34_manual ${kind} > ${manual_folder}/${file} DEPENDS hedro34_manual VERBATIM)
    list(APPEND manual_files ${manual_folder}/${file})
  endforeach()
  add_custom_target(hedro34_manuals ALL DEPENDS ${manual_files})
endif()
