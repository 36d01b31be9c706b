# What a build for Windows needs beside the sources: libraries that Debian has for its own system only, and resources. What it
# makes are one DLL and one program, with nothing beside them.

# Windows 10; the system's own headers with no more than is asked for, and wide characters.
add_compile_definitions(_WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE)
add_link_options(-static -Wl,--no-insert-timestamp)  # the same sources give the same bytes
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_link_options(-Wl,--large-address-aware)
endif()
set(windows_libraries ntdll ole32 oleaut32 advapi32 shell32 user32)

# Sources of the Debian versions that ship now, with Debian's patches.
function(hedro34_debian_source name)
  string(TOUPPER HEDRO34_${name}_SOURCE folder)
  set(${folder} ${PROJECT_SOURCE_DIR}/build/sources/${name} CACHE PATH "The unpacked source of ${name}")
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/debian-source ${name} ${${folder}} COMMAND_ERROR_IS_FATAL ANY)
  file(READ ${${folder}}/debian-version version)
  string(STRIP "${version}" version)
  message(STATUS "${name} ${version}, from its source")
endfunction()

# expat. Its own build files, as patched there, are for Debian.
hedro34_debian_source(expat)
set(expat ${HEDRO34_EXPAT_SOURCE}/expat/lib)
add_library(expat STATIC ${expat}/xmlparse.c ${expat}/xmlrole.c ${expat}/xmltok.c)
# As Debian configures it. A definition without a value, as its own template has them, does not compile.
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/expat/expat_config.h CONTENT "#define BYTEORDER 1234
#define XML_CONTEXT_BYTES 1024
#define XML_DTD 1
#define XML_GE 1
#define XML_NS 1
")
target_compile_definitions(expat PUBLIC XML_STATIC)
target_compile_options(expat PRIVATE -w)
target_include_directories(expat PRIVATE ${PROJECT_BINARY_DIR}/expat)
target_include_directories(expat SYSTEM PUBLIC ${expat})
add_library(EXPAT::EXPAT ALIAS expat)

# utf8proc: one source, which includes its tables.
hedro34_debian_source(utf8proc)
add_library(hedro34_utf8proc STATIC ${HEDRO34_UTF8PROC_SOURCE}/utf8proc.c)
target_compile_definitions(hedro34_utf8proc PUBLIC UTF8PROC_STATIC)
target_compile_options(hedro34_utf8proc PRIVATE -w)
target_include_directories(hedro34_utf8proc SYSTEM PUBLIC ${HEDRO34_UTF8PROC_SOURCE})

# Headers that are the same on every system. Debian's folder as a whole would bring those of its C library as well.
set(shared_headers ${PROJECT_BINARY_DIR}/shared-headers)
file(MAKE_DIRECTORY ${shared_headers})
foreach(package nlohmann CLI)
  if(NOT EXISTS /usr/include/${package})
    message(FATAL_ERROR "/usr/include/${package} is missing; scripts/setup windows installs it")
  endif()
  file(CREATE_LINK /usr/include/${package} ${shared_headers}/${package} SYMBOLIC)
endforeach()
foreach(target nlohmann_json::nlohmann_json CLI11::CLI11)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} SYSTEM INTERFACE ${shared_headers})
endforeach()

# GoogleTest, from the source that Debian's package brings.
if(HEDRO34_BUILD_TESTS)
  set(INSTALL_GTEST OFF)
  set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endif()

# The type library, from the interface definition that the member tables print.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(WIDL_PROGRAM ${mingw}-widl REQUIRED)
file(GLOB standard_library /usr/lib/*/wine/x86_64-windows/stdole2.tlb)
if(NOT standard_library)
  message(FATAL_ERROR "stdole2.tlb, the standard types of type libraries, is missing; scripts/setup windows installs it")
endif()
cmake_path(GET standard_library PARENT_PATH standard_library)
set(definition ${PROJECT_SOURCE_DIR}/hedro34/component/HEDRO34.idl)
set(type_library ${PROJECT_BINARY_DIR}/HEDRO34.tlb)
add_custom_command(OUTPUT ${type_library}
  COMMAND ${WIDL_PROGRAM} -t -I/usr/include/wine/wine/windows -L${standard_library} -o ${type_library} ${definition}
  COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/cmake/without_time.py ${type_library}
  DEPENDS ${definition} ${PROJECT_SOURCE_DIR}/cmake/without_time.py VERBATIM)

enable_language(RC)

# Version and type library of the component; version of the program, which asks for paths of any length.
function(hedro34_resources target description)
  set(file ${PROJECT_BINARY_DIR}/${target}.rc)
  set(HEDRO34_DESCRIPTION ${description})
  get_target_property(type ${target} TYPE)
  if(type STREQUAL SHARED_LIBRARY)
    set(HEDRO34_FILE HEDRO34.dll)
    set(HEDRO34_FILE_TYPE VFT_DLL)
    set(HEDRO34_CONTENT "1 TYPELIB \"${type_library}\"")
    set_property(SOURCE ${file} PROPERTY OBJECT_DEPENDS ${type_library})
  else()
    set(HEDRO34_FILE hedro34.exe)
    set(HEDRO34_FILE_TYPE VFT_APP)
    set(HEDRO34_CONTENT "1 24 \"${PROJECT_SOURCE_DIR}/host/hedro34.manifest\"")
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/resources.rc.in ${file} @ONLY)
  target_sources(${target} PRIVATE ${file})
endfunction()
