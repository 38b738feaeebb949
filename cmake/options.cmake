# What every target of the project is compiled with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

# Programs and libraries stand together as they will be installed, so that they find each other.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

add_library(velmora_options INTERFACE)
target_include_directories(velmora_options INTERFACE
  ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/include ${CMAKE_SOURCE_DIR}/src)
target_compile_options(velmora_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual
  -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Wimplicit-fallthrough
  # Designated initialisers name what differs from the default and leave out the rest on purpose.
  -Wno-missing-field-initializers
  # GCC 12 sees texts overlap that it has itself just made (GCC bug 105651).
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
  # Memory for speed: the compiler seldom looks for what it no longer needs.
  $<$<CXX_COMPILER_ID:GNU>:--param=ggc-min-expand=400>
  $<$<CXX_COMPILER_ID:GNU>:--param=ggc-min-heapsize=524288>
  # File names in log lines and assertions are paths from the repository root, never the build machine's.
  -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
if(VELMORA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(VELMORA_FUZZ)
  # The fuzzers are guided by what the library's own code reaches.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# velmora_sources(RESULT FOLDER... [EXCEPT NAMES] [ALSO FILE...]): the folders' own files, not those of the folders
# below, without those whose names match, and the files from elsewhere. With VELMORA_JOIN the compiler reads them in
# groups.
function(velmora_sources result)
  cmake_parse_arguments(SOURCES "" "EXCEPT" "ALSO" ${ARGN})
  list(TRANSFORM SOURCES_ALSO PREPEND ${CMAKE_SOURCE_DIR}/ OUTPUT_VARIABLE all)
  foreach(folder IN LISTS SOURCES_UNPARSED_ARGUMENTS)
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
    if(SOURCES_EXCEPT)
      list(FILTER found EXCLUDE REGEX "/(${SOURCES_EXCEPT})[.]cpp$")
    endif()
    list(APPEND all ${found})
  endforeach()
  if(VELMORA_JOIN AND all)
    velmora_join(all ${result} ${all})
  endif()
  set(${result} ${all} PARENT_SCOPE)
endfunction()

# velmora_join(RESULT NAME SOURCE...): sources in the build folder, named after NAME, that each include a group of those
# given.
function(velmora_join result name)
  set(script ${CMAKE_SOURCE_DIR}/scripts/source_groups.py)
  execute_process(COMMAND /usr/bin/python3 ${script} ${ARGN} OUTPUT_VARIABLE groups COMMAND_ERROR_IS_FATAL ANY
                  OUTPUT_STRIP_TRAILING_WHITESPACE)
  # A source may have got a name that another of its group has.
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${script} ${ARGN})
  string(REPLACE ";" "|" groups "${groups}")
  string(REPLACE "\n" ";" groups "${groups}")
  set(joined)
  foreach(group IN LISTS groups)
    string(REPLACE "|" "\"\n#include \"" text "#include \"${group}\"\n")
    list(LENGTH joined number)
    set(source ${CMAKE_BINARY_DIR}/joined/${name}/${number}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "${text}" @ONLY)  # left alone when it is as before
    list(APPEND joined ${source})
  endforeach()
  set(${result} ${joined} PARENT_SCOPE)
endfunction()

# What every shared library of ours is linked with.
function(velmora_shared_library target)
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(NOT WIN32)
    target_link_options(${target} PRIVATE -Wl,--as-needed)  # nothing is loaded that is not called
    if(NOT VELMORA_SANITIZE)
      target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
  endif()
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "" RUNTIME_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  endif()
endfunction()

# velmora_exports(TARGET [PATTERN...]): only the documented interface leaves the library, whatever template code the
# compiler emits beside it, and what the patterns name.
function(velmora_exports target)
  if(WIN32)
    return()
  endif()
  set(interface ${CMAKE_SOURCE_DIR}/cmake/velmora.map)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${interface})
  file(READ ${interface} map)
  foreach(pattern IN LISTS ARGN)
    string(REPLACE "extern \"C++\" {" "extern \"C++\" {\n      ${pattern};" map "${map}")
  endforeach()
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
  file(CONFIGURE OUTPUT ${script} CONTENT "${map}" @ONLY)
  target_link_options(${target} PRIVATE -Wl,--version-script=${script})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
endfunction()
