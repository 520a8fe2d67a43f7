# The Debian packages' names, maintainer, copyright and changelog files, and
# the documentation rule that serves both layouts.  cmake/LaminatePackaging.cmake
# turns the install components into the packages (cpack -G DEB).
#
#   component  package               holds
#   runtime    liblaminate1.0-1      the shared library (its soname link too)
#   dev        liblaminate1.0-dev    headers, CMake package, pkg-config file,
#                                    the liblaminate1.0.so link for linkers
#   tcl        tcl-laminate          the Tcl packages' folder, manual pages
#   debdoc     laminate-doc          the documentation
#   python     python3-laminate      the Python package laminate (when built)
#   cli        laminate              the program bin/laminate and laminate(1)
#
# Files that only a Debian package carries (its copyright file and changelog
# under /usr/share/doc/<package>, the documentation under the doc package's
# folder) are EXCLUDE_FROM_ALL: cpack installs them component by component,
# a plain "cmake --install" leaves them out and puts the documentation in
# <prefix>/share/doc/Laminate (component doc) instead.

# The package of a shared library is named after its soname:
# liblaminate1.0.so.1 -> liblaminate1.0-1 (a hyphen, since the name ends in
# a digit).
set(LAMINATE_DEB_RUNTIME liblaminate${PROJECT_VERSION}-${LAMINATE_SOVERSION})
set(LAMINATE_DEB_DEV liblaminate${PROJECT_VERSION}-dev)
set(LAMINATE_DEB_TCL tcl-laminate)
set(LAMINATE_DEB_DOC laminate-doc)
set(LAMINATE_DEB_PYTHON python3-laminate)
# The program's package takes the source package's name (release 1's
# one package of that name held no program).
set(LAMINATE_DEB_CLI laminate)
set(LAMINATE_DEB_SOURCE laminate)
# Release 1 was one package, laminate, holding everything; the four that
# replace it declare so (Breaks/Replaces), for systems that have it.
set(LAMINATE_DEB_RELEASE 2)
set(LAMINATE_DEB_VERSION ${PROJECT_VERSION}-${LAMINATE_DEB_RELEASE})

# Whoever builds packages for others sets this to their own name and address
# (cmake -DLAMINATE_MAINTAINER="Name <address>"); the default names the
# project at an address under the reserved .invalid domain, which is
# well-formed but reaches nobody.
set(LAMINATE_MAINTAINER "Laminate developers <maintainers@laminate.invalid>"
    CACHE STRING "Maintainer field of the Debian packages: Name <address>")
if(NOT LAMINATE_MAINTAINER MATCHES "^[^<>]+ <[^<> ]+@[^<> ]+\\.[^<> ]+>$")
  message(FATAL_ERROR "LAMINATE_MAINTAINER must read \"Name <user@host.domain>\", "
                      "not \"${LAMINATE_MAINTAINER}\"")
endif()

# The copyright file (machine-readable format) and the changelog, both
# filled in with the maintainer; the changelog is compressed as Debian wants
# it (gzip -9n: no name or time stamp in the header, so the bytes depend on
# the text alone).
set(_deb_build ${PROJECT_BINARY_DIR}/debian)
file(MAKE_DIRECTORY ${_deb_build})
configure_file(${PROJECT_SOURCE_DIR}/packaging/debian/copyright.in
  ${_deb_build}/copyright @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/packaging/debian/changelog.in
  ${_deb_build}/changelog.Debian @ONLY)
# The shlibs file tells dpkg-shlibdeps, for packages built against the
# library, which package brings its soname.
file(CONFIGURE OUTPUT ${_deb_build}/shlibs
  CONTENT "liblaminate${PROJECT_VERSION} ${LAMINATE_SOVERSION} ${LAMINATE_DEB_RUNTIME} (>= ${PROJECT_VERSION})\n")
find_program(LAMINATE_GZIP gzip REQUIRED)
execute_process(
  COMMAND ${LAMINATE_GZIP} -9nkf ${_deb_build}/changelog.Debian
  RESULT_VARIABLE _rc)
if(NOT _rc EQUAL 0)
  message(FATAL_ERROR "gzip ${_deb_build}/changelog.Debian failed")
endif()

set(_deb_components runtime dev tcl debdoc cli)
if(LAMINATE_PYTHON_MODULE)
  list(APPEND _deb_components python)
endif()
foreach(_component ${_deb_components})
  if(_component STREQUAL python)
    set(_package ${LAMINATE_DEB_PYTHON})
  elseif(_component STREQUAL cli)
    set(_package ${LAMINATE_DEB_CLI})
  elseif(_component STREQUAL runtime)
    set(_package ${LAMINATE_DEB_RUNTIME})
  elseif(_component STREQUAL dev)
    set(_package ${LAMINATE_DEB_DEV})
  elseif(_component STREQUAL tcl)
    set(_package ${LAMINATE_DEB_TCL})
  else()
    set(_package ${LAMINATE_DEB_DOC})
  endif()
  install(FILES ${_deb_build}/copyright ${_deb_build}/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${_package}
    COMPONENT ${_component} EXCLUDE_FROM_ALL)
endforeach()

# laminate_install_docs(FILES|DIRECTORY <path>... [DESTINATION <subfolder>])
# installs documentation into <prefix>/share/doc/Laminate[/subfolder]
# (component doc) and, for the doc package only, into
# /usr/share/doc/laminate-doc[/subfolder].
function(laminate_install_docs kind)
  cmake_parse_arguments(PARSE_ARGV 1 _doc "" "DESTINATION" "")
  set(_sub)
  if(_doc_DESTINATION)
    set(_sub /${_doc_DESTINATION})
  endif()
  install(${kind} ${_doc_UNPARSED_ARGUMENTS}
    DESTINATION ${CMAKE_INSTALL_DOCDIR}${_sub}
    COMPONENT doc)
  install(${kind} ${_doc_UNPARSED_ARGUMENTS}
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${LAMINATE_DEB_DOC}${_sub}
    COMPONENT debdoc EXCLUDE_FROM_ALL)
endfunction()
