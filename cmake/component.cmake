# libhedro34-component.so, HEDRO34.dll on Windows: the library as a component, with its four exports and nothing else to be seen.
# It stays loaded once it is loaded, since its fault handler does.

# Objects of other languages have function tables without C++'s type information, which a sanitizer would look for.
if(NOT MSVC)
  file(GLOB outward_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/hedro34/component/*.cpp)
  set_property(SOURCE ${outward_sources} APPEND PROPERTY COMPILE_OPTIONS -fno-sanitize=vptr)
endif()
add_library(hedro34_component SHARED ${component_exports})
add_library(HEDRO34::component ALIAS hedro34_component)
set_target_properties(hedro34_component PROPERTIES EXPORT_NAME component)
target_link_libraries(hedro34_component PRIVATE hedro34_inside)
if(WIN32)
  set_target_properties(hedro34_component PROPERTIES OUTPUT_NAME HEDRO34 PREFIX "")
  target_sources(hedro34_component PRIVATE hedro34/component/exports.def)
  target_link_options(hedro34_component PRIVATE -Wl,--enable-stdcall-fixup)
  hedro34_resources(hedro34_component "HEDRO34 component")
else()
  # The file bears the version of the interface and no more, so that what is registered stays there when a patch comes.
  set_target_properties(hedro34_component PROPERTIES
    OUTPUT_NAME hedro34-component VERSION ${interface_version} SOVERSION ${interface_version})
  set(component_map ${PROJECT_SOURCE_DIR}/hedro34/component/exports.map)
  set_property(TARGET hedro34_component PROPERTY LINK_DEPENDS ${component_map})
  target_link_options(hedro34_component PRIVATE -Wl,--version-script=${component_map} -Wl,-z,nodelete)
  if(HEDRO34_STATIC_RUNTIME)
    # CMake puts the archive in front of the library that needs it, so it is taken whole; of the shared expat nothing is needed then.
    target_link_options(hedro34_component PRIVATE -static-libstdc++ -static-libgcc -Wl,--as-needed)
    find_library(HEDRO34_EXPAT_ARCHIVE libexpat.a REQUIRED)
    mark_as_advanced(HEDRO34_EXPAT_ARCHIVE)
    target_link_libraries(hedro34_component PRIVATE -Wl,--whole-archive,${HEDRO34_EXPAT_ARCHIVE},--no-whole-archive)
  endif()
endif()
hedro34_warnings(hedro34_component)

# What the member tables say, as text: `hedro34_tables idl|reference|man|python`.
hedro34_sources(tables_sources tools/tables/*.cpp)
add_executable(hedro34_tables ${tables_sources})
target_link_libraries(hedro34_tables PRIVATE hedro34_inside)
hedro34_warnings(hedro34_tables)
if(NOT WIN32)
  set(interface_manual ${PROJECT_BINARY_DIR}/hedro34-interfaces.3)
  add_custom_command(OUTPUT ${interface_manual} COMMAND hedro34_tables man > ${interface_manual}
    DEPENDS hedro34_tables VERBATIM)
  add_custom_target(hedro34_interface_manual ALL DEPENDS ${interface_manual})
endif()
