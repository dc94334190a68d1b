# The names by which hosts, linkers and other projects find the parts.
foreach(
  name
  Ravelin.so
  libKv.so
  libKv.so.1
  cmake/Ravelin/RavelinConfig.cmake
  cmake/Ravelin/RavelinConfigVersion.cmake
  cmake/Ravelin/RavelinTargets.cmake
  pkgconfig/kv.pc
  pkgconfig/ravelin.pc)
  if(NOT EXISTS ${PREFIX}/${LIBDIR}/${name})
    message(SEND_ERROR "${LIBDIR}/${name} is not installed")
  endif()
endforeach()
