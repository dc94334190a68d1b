# What a library needs at run time beside the libraries of the compiler.
#   cmake -D READELF=<readelf> -D LIBRARY=<library> -D NEEDS=<names, without versions> -P <this>
cmake_minimum_required(VERSION 3.25)

execute_process(
  COMMAND ${READELF} --dynamic --wide ${LIBRARY}
  OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*" lines "${dynamic}")
set(needed)
foreach(line IN LISTS lines)
  string(REGEX REPLACE ".*: ?.(.*)[.]so.*" "\\1" name "${line}")
  list(APPEND needed ${name})
endforeach()
list(FILTER needed EXCLUDE REGEX "^(libstdc[+][+]|libgcc_s|libm|libc|ld-linux-.*)$")
list(SORT needed)
if(NOT needed STREQUAL NEEDS)
  message(FATAL_ERROR "${LIBRARY} needs ${needed} instead of ${NEEDS}")
endif()
