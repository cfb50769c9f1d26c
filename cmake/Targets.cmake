# What every target of ours is compiled with. Libraries that come from outside are SYSTEM includes and are not judged.

set(ZQAFT_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

function(zqaft_flags target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)  # this compiler sees overlaps in std::string where none are
  endif()
  # One statement, one rounding: the same result on every machine, whether or not it can fuse multiply and add.
  target_compile_options(${target} PRIVATE -ffp-contract=off)
  if(ZQAFT_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${ZQAFT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${ZQAFT_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)  # cannot see through a sanitizer's checks
    endif()
  else()
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()
