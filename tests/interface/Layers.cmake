# Dependencies point one way: from the command to the module to the framework.
#   cmake -D SOURCE_DIR=<checkout> -P <this>
# refuse(<folders> <headers>): no source in the folders includes a header whose path begins so.
function(refuse folders headers)
  set(sources)
  foreach(folder IN LISTS folders)
    file(GLOB_RECURSE found ${SOURCE_DIR}/${folder}/*.cpp ${SOURCE_DIR}/${folder}/*.h)
    if(NOT found)
      message(FATAL_ERROR "There are no sources in ${folder}")
    endif()
    list(APPEND sources ${found})
  endforeach()
  foreach(source IN LISTS sources)
    file(STRINGS ${source} lines REGEX "^#include [\"<](${headers})/")
    if(lines)
      message(SEND_ERROR "${source} has: ${lines}")
    endif()
  endforeach()
endfunction()

set(subsystems module raster metadata tree shapefile text files log)
list(JOIN subsystems "|" any_subsystem)
refuse(kv "host|SatCommonUtils|module|metadata|tree|shapefile|files|log")
refuse("${subsystems};include" "host")
# What is public includes public headers alone.
refuse("include;kv/include" "${any_subsystem}|services|stream|xini|xml|xmlitem")
