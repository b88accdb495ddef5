# Builds for 64-bit Windows with mingw-w64, and runs what it builds with Wine.
#
# VELLIS_WINDOWS_ROOT, an option of CMake or a variable of the environment, names a folder with the
# dependencies' headers, libraries and CMake packages, which are looked for there, in the folders of
# CMAKE_PREFIX_PATH and among mingw-w64's own alone: scripts/checks/windows.sh makes one.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compiler whose standard library has threads: `-posix` is Debian's name for it, which elsewhere is
# the only one.
find_program(CMAKE_C_COMPILER NAMES x86_64-w64-mingw32-gcc-posix x86_64-w64-mingw32-gcc)
find_program(CMAKE_CXX_COMPILER NAMES x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-g++)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(NOT VELLIS_WINDOWS_ROOT)
    set(VELLIS_WINDOWS_ROOT "$ENV{VELLIS_WINDOWS_ROOT}")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELLIS_WINDOWS_ROOT)
set(CMAKE_FIND_ROOT_PATH
    "${VELLIS_WINDOWS_ROOT}" ${CMAKE_PREFIX_PATH} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(VELLIS_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(VELLIS_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${VELLIS_WINE}")
endif()
