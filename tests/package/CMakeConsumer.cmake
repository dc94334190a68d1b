# A project that finds the package with find_package.
include(${CMAKE_CURRENT_LIST_DIR}/Consumer.cmake)

run(${CMAKE_COMMAND} -G Ninja -S ${SOURCE_DIR}/tests/package/cmake-consumer -B ${WORK_DIR}/build
    -D CMAKE_BUILD_TYPE=Release -D CMAKE_CXX_COMPILER=${CXX}
    -D CMAKE_CXX_STANDARD=${STANDARD} -D CMAKE_PREFIX_PATH=${PREFIX})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
check_program(${WORK_DIR}/build/band_range)
