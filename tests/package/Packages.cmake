# The Debian packages that cpack makes of this build: what they hold, what they depend on, and that
# the command of the packages runs once they are unpacked together.
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
set(ENV{LC_ALL} C)

function(run variable)
  execute_process(
    COMMAND ${ARGN}
    OUTPUT_VARIABLE output
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(${variable}
      "${output}"
      PARENT_SCOPE)
endfunction()

function(expect what text pattern)
  if(NOT text MATCHES ${pattern})
    message(SEND_ERROR "${what} has nothing of the form ${pattern}:\n${text}")
  endif()
endfunction()

run(made ${CPACK} --config ${BINARY_DIR}/CPackConfig.cmake -B ${WORK_DIR})
file(GLOB debs ${WORK_DIR}/*.deb)
list(LENGTH debs count)
if(NOT count EQUAL 3)
  message(FATAL_ERROR "cpack made ${debs}")
endif()

string(REPLACE "." "[.]" version ${VERSION})
# check_package(<name> <depends> <path>...): dependencies and paths are regular expressions.
function(check_package name depends)
  file(GLOB deb ${WORK_DIR}/${name}_*.deb)
  run(told ${DPKG_DEB} --field ${deb} Version)
  expect("The version of ${name}" "${told}" "^${version}-1$")
  run(told ${DPKG_DEB} --field ${deb} Depends)
  foreach(pattern IN LISTS depends)
    expect("Depends of ${name}" "${told}" ${pattern})
  endforeach()
  run(list ${DPKG_DEB} --contents ${deb})
  foreach(path IN LISTS ARGN ITEMS share/doc/${name}/copyright share/doc/${name}/changelog.gz
                                   share/doc/${name}/changelog.Debian.gz)
    expect(${name} "${list}\n" " [.]/usr/${path}( -> [^\n]*)?\n")
  endforeach()
  foreach(other share/man/man[0-9]/[^\n]*[0-9] ${BINARY_DIR})
    if("${list}\n" MATCHES "${other}\n")
      message(SEND_ERROR "${name} holds ${CMAKE_MATCH_0}")
    endif()
  endforeach()
  run(ignored ${DPKG_DEB} --extract ${deb} ${WORK_DIR}/root)
endfunction()

set(same "libravelin1 [(]= ${version}-1[)]")
check_package(libravelin1 "libc6;libpugixml1v5;libqt5core5a" ${LIBDIR}/Ravelin.so
              ${LIBDIR}/libKv.so.1 ${LIBDIR}/libKv.so.${version})
check_package(
  libravelin-dev "${same}" ${LIBDIR}/libKv.so ${LIBDIR}/pkgconfig/ravelin.pc
  ${LIBDIR}/cmake/Ravelin/RavelinConfig.cmake include/Kv/Kv.h include/SatCommonUtils/Version.h)
check_package(ravelin "${same};libpng16-16;libshp" bin/ravelin share/man/man1/ravelin.1.gz
              share/bash-completion/completions/ravelin)

run(printed ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${WORK_DIR}/root/usr/${LIBDIR}
    ${WORK_DIR}/root/usr/bin/ravelin --version)
expect("ravelin --version" "${printed}" "^ravelin ${version}$")
run(changelog gzip -dc ${WORK_DIR}/root/usr/share/doc/ravelin/changelog.Debian.gz)
expect("changelog.Debian" "${changelog}" "^ravelin [(]${version}-1[)] .*\n -- .*, [ 0-9][0-9] ")
file(REMOVE_RECURSE ${WORK_DIR})
