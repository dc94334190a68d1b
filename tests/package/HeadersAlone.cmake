# Every installed header compiles alone, by this compiler in this standard, twice in a row too.
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
file(GLOB_RECURSE headers RELATIVE ${PREFIX}/${INCLUDEDIR} ${PREFIX}/${INCLUDEDIR}/*.h)
if(NOT headers)
  message(FATAL_ERROR "No headers in ${PREFIX}/${INCLUDEDIR}")
endif()
foreach(header IN LISTS headers)
  set(source ${WORK_DIR}/alone.cpp)
  file(WRITE ${source} "#include <${header}>\n#include <${header}>\n")
  execute_process(
    COMMAND ${CXX} -std=c++${STANDARD} -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Werror
            -I${PREFIX}/${INCLUDEDIR} ${source} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(SEND_ERROR "${header} does not compile alone as C++${STANDARD}")
  endif()
endforeach()
file(REMOVE_RECURSE ${WORK_DIR})
