# Fails when the module needs a symbol of what it is to do without: the environment, the locale of
# the process, threads and locks, output and files but the framework's. All that it is to know comes
# from the host's calls, and it says nothing but by their results.
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
set(ends "^_*exit$|^_Exit$|^quick_exit$|^abort$")
set(prints "^(__)?v?f?printf(_chk)?$|^f?put[cs]$|^putchar$|^fwrite$|^perror$|^std(out|err)$")
string(APPEND prints "|^_ZSt4(cout|cerr|clog)$|^_ZNK14QMessageLogger")
set(files "^(fopen|open|openat|creat)(64)?$|^p?(read|write)(64)?$|^_ZNSt13basic_filebuf")
string(APPEND files "|^_ZN5QFile4open|^_ZN9QSettings")
list(FILTER symbols INCLUDE REGEX "${process}|${threads}|${ends}|${prints}|${files}")
if(symbols)
  message(FATAL_ERROR "The module needs these symbols:\n  ${symbols}")
endif()
