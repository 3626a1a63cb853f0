# Windows programs made on Linux: g++ of MinGW-w64 (Debian: g++-mingw-w64-x86-64-posix) and, to run
# the tools of the build and the tests, Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix) # GoogleTest asks for one
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# One file a program, which needs no libraries of MinGW beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
find_program(wine NAMES wine64 wine)
if(wine)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${wine})
endif()
