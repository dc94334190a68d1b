# What `cpack` makes: Debian packages of the installed files, one a component. scripts/package
# calls it. The libraries share one package because they are always released together.

set(RAVELIN_PACKAGE_CONTACT
    "Ravelin developers <developers@ravelin.example>"
    CACHE STRING "Name and address of who answers for the Debian packages (here: none that exists)")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ravelin)
# Each package begins its description with a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT ${RAVELIN_PACKAGE_CONTACT})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
                                                GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL libraries development)
if(RAVELIN_COMMAND)
  list(APPEND CPACK_COMPONENTS_ALL command)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/kv
    ${PROJECT_BINARY_DIR}/cmake/module)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The libraries of the same build and no other: the module is found by an unversioned name.
set(same_libraries
    "libravelin${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

set(CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME libravelin${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARIES_DESCRIPTION
    "readers of the raw products of satellite sensors - libraries
Raster readers and compositors of headerless 16-bit band files and of scenes
delivered as grids of super tiles, converters of metadata labels to XML, data
trees, shapefiles of one polygon, lists of files and logs.
.
This package holds the module Ravelin.so and the framework libKv.")

# Who is linked to libKv needs this package; the linker's cache is renewed when it comes and goes.
get_target_property(framework_soversion Kv SOVERSION)
file(CONFIGURE OUTPUT debian/shlibs CONTENT
     "libKv ${framework_soversion} ${CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME} (>= ${PROJECT_VERSION})\n")
file(CONFIGURE OUTPUT debian/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/shlibs
                                                 ${PROJECT_BINARY_DIR}/debian/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libravelin-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ${same_libraries})
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "readers of the raw products of satellite sensors - development files
Raster readers and compositors of headerless 16-bit band files and of scenes
delivered as grids of super tiles, with what they are used with.
.
This package holds the C++17 headers, a CMake package and pkg-config files.")

set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME ravelin)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION science)
set(CPACK_DEBIAN_COMMAND_PACKAGE_DEPENDS ${same_libraries})
set(CPACK_DEBIAN_COMMAND_DESCRIPTION
    "command that opens the raw products of satellite sensors
Makes pictures, rasters with ENVI headers, XML, footprints as shapefiles and a
log of product folders that hold headerless 16-bit band files or grids of super
tiles. Its single steps are subcommands.")

# The script that completes the packages before they are closed is told where things are.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/Complete.cmake)
set(CPACK_RAVELIN_SOURCE_DIR ${PROJECT_SOURCE_DIR})
include(CPack)
