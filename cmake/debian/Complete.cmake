# Adds to each package what Debian asks of its documents: the copyright notice, the changelogs and
# the overrides of lintian; compresses manual pages. cpack runs this when the files are laid out.
set(debian ${CPACK_RAVELIN_SOURCE_DIR}/cmake/debian)
set(changelog ${CPACK_RAVELIN_SOURCE_DIR}/CHANGELOG.md)

# release_date(<variable>): the date of this version in CHANGELOG.md, as Debian writes it.
function(release_date variable)
  file(STRINGS ${changelog} headings REGEX "^## ")
  string(REPLACE "." "[.]" version ${CPACK_PACKAGE_VERSION})
  if(NOT headings MATCHES "## \\[${version}\\] - ([0-9-]+)")
    message(FATAL_ERROR "CHANGELOG.md has no line '## [${CPACK_PACKAGE_VERSION}] - YEAR-MONTH-DAY'; "
                        "add the section of this version")
  endif()
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date --utc -R -d ${CMAKE_MATCH_1}
    OUTPUT_VARIABLE date
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(${variable}
      ${date}
      PARENT_SCOPE)
endfunction()

function(compress)
  execute_process(COMMAND gzip -9 -n ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(complete package root)
  set(doc ${root}/usr/share/doc/${package})
  configure_file(${debian}/copyright ${doc}/copyright COPYONLY)
  configure_file(${changelog} ${doc}/changelog COPYONLY)
  configure_file(${debian}/changelog.in ${doc}/changelog.Debian @ONLY)
  file(READ ${debian}/lintian-overrides overrides)
  if(EXISTS ${debian}/lintian-overrides.${package})
    file(READ ${debian}/lintian-overrides.${package} own)
    string(APPEND overrides "${own}")
  endif()
  file(WRITE ${root}/usr/share/lintian/overrides/${package} "${overrides}")
  file(GLOB pages LIST_DIRECTORIES false ${root}/usr/share/man/man*/*)
  compress(${doc}/changelog ${doc}/changelog.Debian ${pages})
endfunction()

release_date(date)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} name)
  complete(${CPACK_DEBIAN_${name}_PACKAGE_NAME} ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component})
endforeach()
