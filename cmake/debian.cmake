# The two Debian packages, one for each part of an installation: scripts/package-debian makes them.

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL program development)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The developers of HEDRO34 <developers@hedro34.invalid>")  # a name that is nobody's
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian_files.cmake)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE hedro34)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME hedro34)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "tests from ExamView onto paper answer sheets
The program hedro34 reads a test that ExamView exported as XML, or a data
document, drops what an answer sheet cannot carry and says so, checks the
versions of a test against each other, and merges the test with a form. Out
come a form whose graded fields show the questions and choices, and a data
document with keys, texts, learning objectives and orders of the versions.

The component does the same for callers of any language.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libhedro34-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "tests from ExamView onto paper answer sheets (development files)
The library of hedro34 for programs in C++20: headers, the static library,
what CMake and pkg-config need to find it, and a manual page of all classes.")
# The files for CMake and pkg-config name the component, which stands in the other package.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "hedro34 (= ${PROJECT_VERSION}), libexpat1-dev")
if(HEDRO34_SIMDJSON)
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libsimdjson-dev")
endif()

include(CPack)
