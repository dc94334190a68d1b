# Every public header is installed and compiles alone as C++17.
include(${CMAKE_CURRENT_LIST_DIR}/Consumer.cmake)

foreach(folder kv/include include)
  file(GLOB_RECURSE headers RELATIVE ${SOURCE_DIR}/${folder} ${SOURCE_DIR}/${folder}/*.h)
  if(NOT headers)
    message(FATAL_ERROR "No headers in ${folder}")
  endif()
  foreach(header IN LISTS headers)
    file(WRITE ${WORK_DIR}/alone.cpp "#include <${header}>\n#include <${header}>\n")
    run(${CXX} -std=c++17 -Wall -Wextra -Wpedantic -Wconversion -Werror -fsyntax-only
        -I${PREFIX}/include ${WORK_DIR}/alone.cpp)
  endforeach()
endforeach()
file(REMOVE_RECURSE ${WORK_DIR})
