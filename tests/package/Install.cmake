# Installs the build into a prefix and moves the tree.
file(REMOVE_RECURSE ${WORK_DIR} ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${WORK_DIR}
                        COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${WORK_DIR} ${PREFIX})
