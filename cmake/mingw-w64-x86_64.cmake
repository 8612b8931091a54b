# Cross-compiles for 64-bit Windows with the posix-threads mingw-w64 compilers; programs built
# here (the tests) run through Wine, in a Wine prefix of their own inside the build folder.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# wine-run.sh sets up the prefix on first use (under a lock, so parallel tests do not race) and
# keeps Wine quiet and free of install dialogs.
find_program(VELMORA_WINE NAMES wine wine64 HINTS /usr/lib/wine)
if(VELMORA_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR
      /bin/sh ${CMAKE_CURRENT_LIST_DIR}/wine-run.sh ${CMAKE_BINARY_DIR}/wineprefix ${VELMORA_WINE})
else()
  message(WARNING "Wine not found: the Windows test programs build but cannot run")
endif()
