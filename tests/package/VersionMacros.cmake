# A program of a user compiles against the version header, whose parts agree.
include(${CMAKE_CURRENT_LIST_DIR}/Consumer.cmake)

run(${CXX} -std=c++17 -Wall -Wextra -Werror -I${PREFIX}/${INCLUDEDIR}
    ${SOURCE_DIR}/tests/package/print_version.cpp -o ${WORK_DIR}/print_version)
execute_process(
  COMMAND ${WORK_DIR}/print_version
  OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
if(NOT printed STREQUAL "${VERSION} ${VERSION}\n")
  message(FATAL_ERROR "The header's versions are ${printed}, not ${VERSION}")
endif()
file(REMOVE_RECURSE ${WORK_DIR})
