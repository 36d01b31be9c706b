# Windows on x86-64, from any system: Debian's mingw-w64 with POSIX threads.
set(mingw x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
