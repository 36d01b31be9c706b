# Windows in 32 bits, from any system: Debian's mingw-w64 with POSIX threads.
set(mingw i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
