# How a layer is built. Each layer is one static library whose headers are reachable only by
# those that link it, so that an include against the direction of the layers doesn't compile.

add_library(orbelo_flags INTERFACE)
target_compile_options(orbelo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<CXX_COMPILER_ID:Clang>:-Wextra-semi -Wimplicit-fallthrough -Wunreachable-code>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 reports its own inlined std::string copies (its bug 105329).
  target_compile_options(orbelo_flags INTERFACE -Wno-restrict)
endif()
if(ORBELO_SANITIZE)
  target_compile_options(orbelo_flags INTERFACE
    -fsanitize=${ORBELO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orbelo_flags INTERFACE -fsanitize=${ORBELO_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Its checks hide from GCC that the C++ library's <regex> is initialised (its bug 105562).
    target_compile_options(orbelo_flags INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
if(ORBELO_COVERAGE)
  # Threads count too.
  target_compile_options(orbelo_flags INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(orbelo_flags INTERFACE --coverage)
endif()

# orbelo_layer(<name> SOURCES <file>... [BELOW <layer>...])
function(orbelo_layer name)
  cmake_parse_arguments(PARSE_ARGV 1 layer "" "" "SOURCES;BELOW")
  add_library(orbelo_${name} STATIC ${layer_SOURCES})
  add_library(orbelo::${name} ALIAS orbelo_${name})
  target_include_directories(orbelo_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(orbelo_${name} PRIVATE orbelo_flags)
  foreach(below IN LISTS layer_BELOW)
    target_link_libraries(orbelo_${name} PUBLIC orbelo::${below})
  endforeach()
endfunction()

# orbelo_calls_unknown_objects(<target>)
# The target calls objects whose type no sanitizer can tell: what the platform has made, and
# handles that have ended, which must answer all the same.
function(orbelo_calls_unknown_objects target)
  target_link_libraries(${target} PRIVATE orbelo_unknown_objects)
endfunction()
add_library(orbelo_unknown_objects INTERFACE)
# Behind -fsanitize, which would switch it on again.
target_link_libraries(orbelo_unknown_objects INTERFACE orbelo_flags)
target_compile_options(orbelo_unknown_objects INTERFACE -fno-sanitize=vptr)
