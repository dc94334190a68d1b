# Shapelib (libshp) brings no CMake package of its own. Defines Shapelib::Shapelib.
find_path(Shapelib_INCLUDE_DIR shapefil.h)
find_library(Shapelib_LIBRARY shp)
mark_as_advanced(Shapelib_INCLUDE_DIR Shapelib_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Shapelib REQUIRED_VARS Shapelib_LIBRARY Shapelib_INCLUDE_DIR)

if(Shapelib_FOUND AND NOT TARGET Shapelib::Shapelib)
  add_library(Shapelib::Shapelib UNKNOWN IMPORTED)
  set_target_properties(
    Shapelib::Shapelib PROPERTIES IMPORTED_LOCATION "${Shapelib_LIBRARY}"
                                  INTERFACE_INCLUDE_DIRECTORIES "${Shapelib_INCLUDE_DIR}")
endif()
