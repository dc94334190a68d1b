# What `cmake --install` lays down: the libraries, the command, the headers, a CMake package and
# pkg-config files. The installed tree finds its own parts by relative paths, so it can be moved.

include(CMakePackageConfigHelpers)

set(RAVELIN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Ravelin)

set_target_properties(Ravelin PROPERTIES INSTALL_RPATH "$ORIGIN")
install(
  TARGETS Kv Ravelin
  EXPORT RavelinTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY kv/include/Kv include/SatCommonUtils DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

if(RAVELIN_COMMAND)
  file(RELATIVE_PATH library_from_command ${CMAKE_INSTALL_FULL_BINDIR}
       ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(ravelin PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_command}")
  install(TARGETS ravelin RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(
  EXPORT RavelinTargets
  NAMESPACE Ravelin::
  DESTINATION ${RAVELIN_CMAKE_DIR})
configure_package_config_file(cmake/RavelinConfig.cmake.in RavelinConfig.cmake
                              INSTALL_DESTINATION ${RAVELIN_CMAKE_DIR})
write_basic_package_version_file(RavelinConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/RavelinConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/RavelinConfigVersion.cmake
        DESTINATION ${RAVELIN_CMAKE_DIR})

file(RELATIVE_PATH RAVELIN_PREFIX_FROM_LIBRARY ${CMAKE_INSTALL_FULL_LIBDIR}
     ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH RAVELIN_INCLUDE_FROM_LIBRARY ${CMAKE_INSTALL_FULL_LIBDIR}
     ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/kv.pc.in kv.pc @ONLY)
configure_file(cmake/ravelin.pc.in ravelin.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kv.pc ${CMAKE_CURRENT_BINARY_DIR}/ravelin.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
