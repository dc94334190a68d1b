# Every public header is installed as it is in the checkout.
foreach(folder kv/include include)
  file(GLOB_RECURSE headers RELATIVE ${SOURCE_DIR}/${folder} ${SOURCE_DIR}/${folder}/*.h)
  if(NOT headers)
    message(FATAL_ERROR "No headers in ${folder}")
  endif()
  foreach(header IN LISTS headers)
    execute_process(
      COMMAND ${CMAKE_COMMAND} -E compare_files ${SOURCE_DIR}/${folder}/${header}
              ${PREFIX}/${INCLUDEDIR}/${header} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endforeach()
