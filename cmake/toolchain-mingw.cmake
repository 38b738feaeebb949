# Cross-compiles for 64-bit Windows with Debian's mingw-w64, in its POSIX-threads variant: std::thread and
# std::mutex need it, and so must everything that shares the C++ runtime.
#
# VELMORA_WINDOWS_STAGE: where scripts/build-windows-deps has put what Debian has no mingw package of.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

get_filename_component(velmora_repository "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(VELMORA_WINDOWS_STAGE "${velmora_repository}/build/stage/windows" CACHE PATH
    "Staged libraries for Windows (scripts/build-windows-deps)")
# try_compile reads this file afresh and must see the same stage.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELMORA_WINDOWS_STAGE)

# Headers and libraries of the build machine never leak in; its programs stay usable.
set(CMAKE_FIND_ROOT_PATH "${VELMORA_WINDOWS_STAGE}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR "${velmora_repository}/scripts/wine-run")
unset(velmora_repository)
