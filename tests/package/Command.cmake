# The installed command finds its libraries and tells the version of the project.
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${PREFIX}/bin/ravelin --version
  OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
if(NOT printed MATCHES "(^|[^0-9.])${VERSION}\n")
  message(FATAL_ERROR "The command printed: ${printed}")
endif()
