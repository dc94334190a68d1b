# Settings that every target of the project shares: language, warnings, visibility, sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(RAVELIN_SANITIZE
    ""
    CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

# Warnings, and the semantics that the binary interface rests on: calls to exported functions go
# through the dynamic symbol with both compilers, and the module can be unloaded, which the unique
# symbols that g++ makes of constants in inline functions would prevent.
function(ravelin_settings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion
                                           -fsemantic-interposition
                                           $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
  if(RAVELIN_DEVELOPER OR RAVELIN_BENCHMARKS OR RAVELIN_FUZZERS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(RAVELIN_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${RAVELIN_SANITIZE}
                                             -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${RAVELIN_SANITIZE})
  endif()
endfunction()

# A shared library of the project. Its calls into other libraries, its own exported functions
# included, go straight through the table of addresses instead of through a stub each.
function(ravelin_library_settings target)
  ravelin_settings(${target})
  target_compile_options(${target} PRIVATE -fno-plt)
endfunction()

# Has a library count which of its branches are taken, where fuzz targets are guided by it.
function(ravelin_guides_fuzzers target)
  if(RAVELIN_FUZZERS)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()
