# Compares what the module exports with what it is to export.
#   cmake -D NM=<nm> -D MODULE=<Ravelin.so> -D LIST=<list> -D CHECK=<names|list|refresh> -P <this>
# names: the symbols with C linkage are exactly the two entry points. list: the symbols are those of
# the list. refresh: writes the list anew. Instances of the standard library's templates are not
# looked at: which of them a library holds is up to the compiler.
cmake_minimum_required(VERSION 3.25)

execute_process(
  COMMAND ${NM} -D --defined-only --format=posix ${MODULE}
  OUTPUT_VARIABLE output
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "[ ][^\n]*" "" symbols "${output}")
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")
list(SORT symbols)

if(CHECK STREQUAL "names")
  list(FILTER symbols EXCLUDE REGEX "^_Z|^__")
  if(NOT symbols STREQUAL "Deinit_Ravelin;Init_Ravelin")
    message(FATAL_ERROR "Symbols with C linkage must be Deinit_Ravelin and Init_Ravelin alone, "
                        "but these are exported:\n  ${symbols}")
  endif()
  return()
endif()

list(FILTER symbols EXCLUDE REGEX "^_ZNK?S[abst]|^_ZS[abst]|^_ZT[VISC]N?S[abst]|9__gnu_cxx")
list(JOIN symbols "\n" text)
if(CHECK STREQUAL "refresh")
  file(WRITE ${LIST} "${text}\n")
  return()
endif()

file(STRINGS ${LIST} listed)
set(missing ${listed})
list(REMOVE_ITEM missing ${symbols})
set(added ${symbols})
list(REMOVE_ITEM added ${listed})
if(missing OR added)
  list(JOIN missing "\n  " missing)
  list(JOIN added "\n  " added)
  message(
    FATAL_ERROR
      "The exported symbols are not those of ${LIST}.\nMissing:\n  ${missing}\nNew:\n  ${added}\n"
      "A host compiled before needs what is missing. If the change is meant, refresh the list:\n"
      "  cmake --build ${BUILD} --target refresh-exported-symbols\n")
endif()
