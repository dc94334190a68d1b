# A compiler call with what pkg-config gives.
include(${CMAKE_CURRENT_LIST_DIR}/Consumer.cmake)

set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
execute_process(
  COMMAND ${PKG_CONFIG} --cflags --libs ravelin
  OUTPUT_VARIABLE flags
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")

run(${CXX} -std=c++${STANDARD} -Wall -Wextra -Wpedantic -Wconversion -Werror
    ${SOURCE_DIR}/tests/package/band_range.cpp ${flags} -o ${WORK_DIR}/band_range)
check_program(${WORK_DIR}/band_range ${CMAKE_COMMAND} -E env
              LD_LIBRARY_PATH=${PREFIX}/${LIBDIR})
