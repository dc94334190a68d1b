# The builds that developers and scripts name.
execute_process(
  COMMAND ${CMAKE_COMMAND} --list-presets
  WORKING_DIRECTORY ${SOURCE_DIR}
  OUTPUT_VARIABLE listed COMMAND_ERROR_IS_FATAL ANY)
foreach(name release debug asan tsan fuzz bench)
  if(NOT listed MATCHES "\"${name}\"")
    message(SEND_ERROR "There is no preset ${name}:\n${listed}")
  endif()
endforeach()
