# Windows x86-64 by Debian's MinGW-w64 with POSIX threads; everything static. CINEDISC_WINDOWS_PREFIX (a variable of the
# environment, too) is where the libraries lie.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(system x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${system}-gcc-posix)
set(CMAKE_CXX_COMPILER ${system}-g++-posix)
set(CMAKE_RC_COMPILER ${system}-windres)
set(CMAKE_AR /usr/bin/${system}-gcc-ar-posix)
set(CMAKE_RANLIB /usr/bin/${system}-gcc-ranlib-posix)

if(NOT CINEDISC_WINDOWS_PREFIX)
  set(CINEDISC_WINDOWS_PREFIX $ENV{CINEDISC_WINDOWS_PREFIX})
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CINEDISC_WINDOWS_PREFIX)
set(CMAKE_PREFIX_PATH ${CINEDISC_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH /usr/${system} ${CINEDISC_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# The tools that Qt runs while building are this machine's.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)
# Found by name it would be the import library of a zlib1.dll.
set(ZLIB_LIBRARY /usr/${system}/lib/libz.a CACHE FILEPATH "zlib")

# This compiler does not align the stack for 32-byte vectors; the assembler writes moves that need no alignment.
set(CMAKE_CXX_FLAGS_INIT "-Wa,-muse-unaligned-vector-move -DOPJ_STATIC -DLIBXML_STATIC -DUNICODE -DNOMINMAX")
set(CMAKE_C_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
