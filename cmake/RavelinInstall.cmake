# What `cmake --install` lays down: the libraries, the command, the headers, a CMake package and
# pkg-config files. The installed tree finds its own parts by relative paths, so it can be moved.
# The components are those of the Debian packages (RavelinPackages): libraries, development and, for
# whatever names none, command.

include(CMakePackageConfigHelpers)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME command)
set(RAVELIN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Ravelin)

set_target_properties(Ravelin PROPERTIES INSTALL_RPATH "$ORIGIN")
install(
  TARGETS Kv Ravelin
  EXPORT RavelinTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          COMPONENT libraries
          NAMELINK_COMPONENT development)
install(
  DIRECTORY kv/include/Kv include/SatCommonUtils ${PROJECT_BINARY_DIR}/include/SatCommonUtils
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT development
  FILES_MATCHING
  PATTERN *.h)

if(RAVELIN_COMMAND)
  file(RELATIVE_PATH library_from_command ${CMAKE_INSTALL_FULL_BINDIR}
       ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(ravelin PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_command}")
  install(TARGETS ravelin RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  set(documents_dir ${PROJECT_BINARY_DIR}/host/documents)
  install(FILES ${documents_dir}/ravelin.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(
    FILES ${documents_dir}/ravelin.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME ravelin)
  # Debian's own zsh looks into share/zsh/vendor-completions instead.
  set(RAVELIN_ZSH_COMPLETIONS
      ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
      CACHE STRING "Folder of completions for zsh")
  install(FILES ${documents_dir}/_ravelin DESTINATION ${RAVELIN_ZSH_COMPLETIONS})
  install(FILES ${documents_dir}/ravelin.fish
          DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()

install(
  EXPORT RavelinTargets
  NAMESPACE Ravelin::
  DESTINATION ${RAVELIN_CMAKE_DIR}
  COMPONENT development)
configure_package_config_file(cmake/RavelinConfig.cmake.in RavelinConfig.cmake
                              INSTALL_DESTINATION ${RAVELIN_CMAKE_DIR})
write_basic_package_version_file(RavelinConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/RavelinConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/RavelinConfigVersion.cmake
        DESTINATION ${RAVELIN_CMAKE_DIR}
        COMPONENT development)

file(RELATIVE_PATH RAVELIN_PREFIX_FROM_LIBRARY ${CMAKE_INSTALL_FULL_LIBDIR}
     ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH RAVELIN_INCLUDE_FROM_LIBRARY ${CMAKE_INSTALL_FULL_LIBDIR}
     ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/kv.pc.in kv.pc @ONLY)
configure_file(cmake/ravelin.pc.in ravelin.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kv.pc ${CMAKE_CURRENT_BINARY_DIR}/ravelin.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
