# A host that is not linked to the module loads it; the module finds the framework by itself.
include(${CMAKE_CURRENT_LIST_DIR}/Consumer.cmake)

run(${CXX} -std=c++17 ${SOURCE_DIR}/tests/package/load_module.cpp -o ${WORK_DIR}/load_module -ldl)
run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${WORK_DIR}/load_module
    ${PREFIX}/${LIBDIR}/Ravelin.so)
file(REMOVE_RECURSE ${WORK_DIR})
