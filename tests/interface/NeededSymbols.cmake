# Fails when the module needs a symbol of what it is to do without: the environment, the locale of
# the process, threads and locks. All that it is to know comes from the host's calls.
#   cmake -D NM=<nm> -D MODULE=<Ravelin.so> -P <this>
cmake_minimum_required(VERSION 3.25)

execute_process(
  COMMAND ${NM} -D --undefined-only --format=posix ${MODULE}
  OUTPUT_VARIABLE output
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "[@ ][^\n]*" "" symbols "${output}")
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")
if(NOT "free" IN_LIST symbols)
  message(FATAL_ERROR "No symbols were read:\n${output}")
endif()
set(process "^_*(secure_)?getenv$|^_*environ$|^setlocale$|^fork$|^_Z[0-9]+qgetenv")
set(threads "^pthread_|^thrd_|^mtx_|^sem_|^_ZNSt6thread|^_ZN6QMutex|^_ZN7QThread")
list(FILTER symbols INCLUDE REGEX "${process}|${threads}")
if(symbols)
  message(FATAL_ERROR "The module needs these symbols:\n  ${symbols}")
endif()
