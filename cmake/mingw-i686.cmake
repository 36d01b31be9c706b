# Windows in 32 bits, from any system: Debian's mingw-w64 with POSIX threads.
set(mingw i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR i686)
# Numbers as 64-bit systems have them, so that a float has the same bits everywhere. Callers of other compilers keep the stack
# aligned to 4 bytes only.
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_INIT "-msse2 -mfpmath=sse -mincoming-stack-boundary=2")
endforeach()
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
