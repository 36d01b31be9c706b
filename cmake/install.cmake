# What an installation holds, in two parts: `program` is what a user of the program and of the component needs, `development` what
# a C++ program is compiled with. Nothing says where it was installed to, so a folder that is moved still serves.

include(CMakePackageConfigHelpers)
set(documents ${CMAKE_INSTALL_DATAROOTDIR}/doc/hedro34)
set(package_files ${PROJECT_BINARY_DIR}/package)
set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/HEDRO34)
set(component_folder ${CMAKE_INSTALL_LIBDIR}/hedro34)

# --- program and component -------------------------------------------------------------------------------------------

if(HEDRO34_BUILD_PROGRAM)
  install(TARGETS hedro34 RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
  install(FILES ${manual_folder}/hedro34.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
  set(shared_data ${CMAKE_INSTALL_DATAROOTDIR})
  install(FILES ${manual_folder}/hedro34.bash
    DESTINATION ${shared_data}/bash-completion/completions RENAME hedro34 COMPONENT program)
  set(zsh_folder site-functions)  # where zsh looks in /usr/local too; in /usr that of packages
  if(CMAKE_INSTALL_PREFIX STREQUAL /usr)
    set(zsh_folder vendor-completions)
  endif()
  install(FILES ${manual_folder}/_hedro34 DESTINATION ${shared_data}/zsh/${zsh_folder} COMPONENT program)
  install(FILES ${manual_folder}/hedro34.fish DESTINATION ${shared_data}/fish/vendor_completions.d COMPONENT program)
endif()
include(cmake/samples.cmake)
foreach(sample IN LISTS samples)
  cmake_path(GET sample PARENT_PATH folder)
  install(FILES examples/${sample} DESTINATION ${documents}/examples/${folder} COMPONENT program)
endforeach()
if(HEDRO34_BUILD_COMPONENT)
  install(TARGETS hedro34_component EXPORT HEDRO34ComponentTargets
    LIBRARY DESTINATION ${component_folder} COMPONENT program)
endif()

# --- library ---------------------------------------------------------------------------------------------------------

foreach(header IN LISTS public_headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT development)
endforeach()
install(FILES ${generated}/hedro34/version.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/hedro34 COMPONENT development)
install(TARGETS hedro34_library EXPORT HEDRO34Targets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(EXPORT HEDRO34Targets NAMESPACE HEDRO34:: DESTINATION ${cmake_folder} COMPONENT development)
if(HEDRO34_BUILD_COMPONENT)
  install(EXPORT HEDRO34ComponentTargets NAMESPACE HEDRO34:: DESTINATION ${cmake_folder} COMPONENT development)
  install(FILES ${interface_manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
endif()

# What a program has to find and link beside a static library; a shared one has found it.
set(link_packages)
if(library_type STREQUAL STATIC_LIBRARY)
  set(link_packages EXPAT)
  if(HEDRO34_SIMDJSON)
    list(APPEND link_packages simdjson)
  endif()
endif()

set(PATH_TO_COMPONENT ${component_folder}/libhedro34-component.so.${interface_version})
configure_package_config_file(cmake/HEDRO34Config.cmake.in ${package_files}/HEDRO34Config.cmake
  INSTALL_DESTINATION ${cmake_folder} PATH_VARS PATH_TO_COMPONENT NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${package_files}/HEDRO34ConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${package_files}/HEDRO34Config.cmake ${package_files}/HEDRO34ConfigVersion.cmake
  DESTINATION ${cmake_folder} COMPONENT development)

# pkg-config, from the folder of its own file.
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} NORMALIZE OUTPUT_VARIABLE pc_folder)
file(RELATIVE_PATH PC_TO_PREFIX ${pc_folder}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" PC_TO_PREFIX ${PC_TO_PREFIX})
function(below_prefix variable folder)
  if(NOT IS_ABSOLUTE ${folder})
    string(PREPEND folder "\${prefix}/")
  endif()
  set(${variable} ${folder} PARENT_SCOPE)
endfunction()
below_prefix(PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
below_prefix(PC_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
below_prefix(PC_COMPONENT ${PATH_TO_COMPONENT})
list(TRANSFORM link_packages TOLOWER OUTPUT_VARIABLE PC_REQUIRES)
list(JOIN PC_REQUIRES " " PC_REQUIRES)
set(pc_names hedro34)
if(HEDRO34_BUILD_COMPONENT)
  list(APPEND pc_names hedro34-component)
endif()
foreach(name IN LISTS pc_names)
  configure_file(cmake/${name}.pc.in ${package_files}/${name}.pc @ONLY)
  install(FILES ${package_files}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

# --- and back --------------------------------------------------------------------------------------------------------

# Each installation adds its files to a record, which the target follows.
if(PROJECT_IS_TOP_LEVEL)
  set(record ${PROJECT_BINARY_DIR}/installed.txt)
  install(CODE "set(record [==[${record}]==])\ninclude([==[${PROJECT_SOURCE_DIR}/cmake/record.cmake]==])" ALL_COMPONENTS)
  add_custom_target(hedro34_uninstall COMMAND sh ${PROJECT_SOURCE_DIR}/cmake/uninstall.sh ${record} VERBATIM)
endif()

if(PROJECT_IS_TOP_LEVEL)
  include(cmake/debian.cmake)
endif()
