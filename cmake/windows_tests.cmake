# Has what the including folder compiles and links for Windows made by clang, in half of GCC's time. And clang can call lld,
# which takes half a second to link a test program where GNU ld takes half a minute. The product's own programs and
# libraries are made by GCC, as hosts make theirs, and so is the little that is written in C.

# First, as it brings along what CMake says to GCC.
enable_language(C)

find_program(VELMORA_CLANG clang++-19 REQUIRED)
set(clang "${VELMORA_CLANG} --target=x86_64-w64-mingw32")
string(REPLACE "<CMAKE_CXX_COMPILER>" "${clang}" CMAKE_CXX_COMPILE_OBJECT "${CMAKE_CXX_COMPILE_OBJECT}")
string(REPLACE "<CMAKE_CXX_COMPILER> <FLAGS>" "${clang} -fuse-ld=lld -pthread"
       CMAKE_CXX_LINK_EXECUTABLE "${CMAKE_CXX_LINK_EXECUTABLE}")

# What CMake says to clang where it would say something else to GCC.
set(CMAKE_CXX_COMPILE_OPTIONS_VISIBILITY_INLINES_HIDDEN -fvisibility-inlines-hidden)
set(CMAKE_PCH_EXTENSION .pch)
set(CMAKE_CXX_COMPILE_OPTIONS_CREATE_PCH -Xclang -emit-pch -Xclang -include -Xclang <PCH_HEADER> -x c++-header)
set(CMAKE_CXX_COMPILE_OPTIONS_USE_PCH -Xclang -include-pch -Xclang <PCH_FILE> -Xclang -include -Xclang <PCH_HEADER>)

# Options that are for GCC alone are no errors, and files are named with slashes, as GCC names them.
add_compile_options(
  "$<$<COMPILE_LANGUAGE:CXX>:-Wno-unknown-warning-option;-Wno-unused-command-line-argument;-fno-file-reproducible>")
