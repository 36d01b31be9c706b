# Run by CPack on what it installed for the packages, before it packs that: adds what Debian wants beside it.

set(sources ${CMAKE_CURRENT_LIST_DIR}/..)
set(compiled_in_development nlohmann-json simdjson)  # headers, so that no dependency tells of them
set(compiled_in_program ${compiled_in_development} CLI11)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  set(documents ${share}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})

  set(licences ${CPACK_TEMPORARY_DIRECTORY}/licences)
  run(${sources}/scripts/licences ${licences} HEDRO34 ${compiled_in_${component}})
  file(READ ${licences}/HEDRO34.txt terms)
  foreach(name IN LISTS compiled_in_${component})
    file(READ ${licences}/${name}.txt more)
    string(APPEND terms "\n---- Parts of ${name} are compiled in. Its terms: ----\n\n${more}")
  endforeach()
  file(WRITE ${documents}/copyright "${terms}")
  file(REMOVE_RECURSE ${licences})

  run(python3 ${sources}/cmake/debian_changelog.py ${sources}/CHANGELOG.md ${CPACK_PACKAGE_VERSION}
    ${CPACK_PACKAGE_CONTACT} ${documents}/changelog)
  file(GLOB_RECURSE pages ${share}/man/*)
  run(gzip -9n ${documents}/changelog ${pages})
endforeach()
