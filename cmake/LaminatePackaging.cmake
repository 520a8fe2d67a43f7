# The Debian packages, through CPack: "cpack -G DEB" in the build folder (or
# scripts/deb.sh) writes one package per install component into it, named
# and filled as cmake/LaminateDebian.cmake lists:
#
#   liblaminate1.0-1_1.0-2_<arch>.deb    the shared library
#   liblaminate1.0-dev_1.0-2_<arch>.deb  what C++ programs build against
#   tcl-laminate_1.0-2_<arch>.deb        the Tcl packages and their pages
#   laminate-doc_1.0-2_all.deb           the documentation
#   python3-laminate_1.0-2_<arch>.deb    the Python package (when built)
#   laminate_1.0-2_all.deb               the program laminate and its page
#
# They install under /usr: the library in Debian's multiarch library folder,
# the Tcl package folder in /usr/lib/tcltk, which Debian's tclsh has on its
# auto_path.  After "apt install ./tcl-laminate_1.0-2_amd64.deb
# ./liblaminate1.0-1_1.0-2_amd64.deb", "package require Laminate" works.
# lintian passes them without a warning (ctest -L lintian).

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${LAMINATE_DEB_SOURCE})
set(CPACK_PACKAGE_VENDOR "Laminate developers")
set(CPACK_PACKAGE_CONTACT "${LAMINATE_MAINTAINER}")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Debug information stays in the build folder.
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE
  GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime dev tcl debdoc cli)
if(LAMINATE_PYTHON_MODULE)
  list(APPEND CPACK_COMPONENTS_ALL python)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${LAMINATE_DEB_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SOURCE ${LAMINATE_DEB_SOURCE})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${LAMINATE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Maintainer scripts and control files with the modes dpkg expects.
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The runtime package's dependencies (the C and C++ runtimes) come from
# dpkg-shlibdeps on the built library, run at cpack time by
# cmake/LaminateCPackProject.cmake; its shlibs file is written at configure
# time (cmake/LaminateDebian.cmake).  CPack's own SHLIBDEPS and
# GENERATE_SHLIBS stay off: with either on it also writes postinst and
# postrm scripts that call ldconfig, which the trigger below does instead.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS OFF)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/debian/CPackProject.cmake)
set(_laminate_python_cpack)
if(LAMINATE_PYTHON_MODULE)
  # The Python it was built for (python3 (>= 3.11~), python3 (<< 3.12)) and NumPy.
  set(_py ${LAMINATE_PYTHON_VERSION_MAJOR}.${LAMINATE_PYTHON_VERSION_MINOR})
  math(EXPR _py_next "${LAMINATE_PYTHON_VERSION_MINOR} + 1")
  set(_laminate_python_cpack "set(LAMINATE_PYTHON_MODULE_FILE \"${LAMINATE_PYTHON_MODULE_FILE}\")
set(LAMINATE_LIBRARY_DIR \"$<TARGET_FILE_DIR:laminate>\")
set(LAMINATE_SHLIBS \"${PROJECT_BINARY_DIR}/debian/shlibs\")
set(LAMINATE_PYTHON_DEPENDS \"python3 (>= ${_py}~), python3 (<< ${LAMINATE_PYTHON_VERSION_MAJOR}.${_py_next}), python3-numpy\")
include(\"${PROJECT_SOURCE_DIR}/python/LaminatePythonCPack.cmake\")
")
endif()
file(GENERATE OUTPUT ${CPACK_PROJECT_CONFIG_FILE}
  CONTENT "set(LAMINATE_LIBRARY \"$<TARGET_FILE:laminate>\")
include(\"${PROJECT_SOURCE_DIR}/cmake/LaminateCPackProject.cmake\")
${_laminate_python_cpack}")
set(_laminate_replaces "${LAMINATE_DEB_SOURCE} (<< ${LAMINATE_DEB_VERSION})")

set(_laminate_about
"Laminate evaluates laminated composite shells by classical
laminated-plate theory with first-order transverse shear: ply stiffness,
the A, B, D and H matrices, ply stresses and strains, and the Tsai-Wu,
Hashin and LaRC04 failure criteria, over a dense linear-algebra library of
its own.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${LAMINATE_DEB_RUNTIME})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"C++ library for laminated composite shells
${_laminate_about}

This package contains the shared library, which is also the binary
extension behind the Tcl packages of tcl-laminate.")
# The library's folder is in the dynamic loader's cache: dpkg runs ldconfig
# once after the packages of a run are unpacked (the trigger), not a
# maintainer script per package.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/packaging/debian/triggers
  ${PROJECT_BINARY_DIR}/debian/shlibs)

set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${LAMINATE_DEB_DEV})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
  "${LAMINATE_DEB_RUNTIME} (= ${LAMINATE_DEB_VERSION})")
set(CPACK_DEBIAN_DEV_PACKAGE_BREAKS "${_laminate_replaces}")
set(CPACK_DEBIAN_DEV_PACKAGE_REPLACES "${_laminate_replaces}")
set(CPACK_DEBIAN_DEV_DESCRIPTION
"C++ library for laminated composite shells - development files
${_laminate_about}

This package contains the C++ headers, the CMake package
(find_package(Laminate)), the pkg-config file and the link that programs
are linked through.")

# The library reaches Tcl only through the stub table of the interpreter
# that loads it: the Tcl packages need an interpreter, 8.5 or later for
# laminate::analysis.
set(CPACK_DEBIAN_TCL_PACKAGE_NAME ${LAMINATE_DEB_TCL})
set(CPACK_DEBIAN_TCL_PACKAGE_SECTION interpreters)
set(CPACK_DEBIAN_TCL_PACKAGE_DEPENDS
  "${LAMINATE_DEB_RUNTIME} (= ${LAMINATE_DEB_VERSION}), tcl (>= 8.5)")
set(CPACK_DEBIAN_TCL_PACKAGE_BREAKS "${_laminate_replaces}")
set(CPACK_DEBIAN_TCL_PACKAGE_REPLACES "${_laminate_replaces}")
set(CPACK_DEBIAN_TCL_DESCRIPTION
"Tcl packages for laminated composite shells
${_laminate_about}

This package contains the Tcl packages Laminate (the commands
laminate_material, laminate_results and last_layer) and
laminate::analysis (whole laminates at once: stiffness matrices,
first-ply failure, load-case batches and failure envelopes), with their
manual pages and short examples, and laminate::report (text tables,
SVG pictures, an HTML page and load-case tables of a laminate).")

set(CPACK_DEBIAN_DEBDOC_PACKAGE_NAME ${LAMINATE_DEB_DOC})
set(CPACK_DEBIAN_DEBDOC_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DEBDOC_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DEBDOC_DESCRIPTION
"documentation of the Laminate composite shell library
${_laminate_about}

This package contains the command reference of the Tcl packages, the
guide to the laminate program and the report package with its example
pictures, the manual pages in HTML, and notes on building these
packages.")

# The program is a Tcl script: architecture all, on the Tcl packages of the
# same release and an interpreter for its "#!/usr/bin/env tclsh" line.
set(CPACK_DEBIAN_CLI_PACKAGE_NAME ${LAMINATE_DEB_CLI})
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION science)
set(CPACK_DEBIAN_CLI_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_CLI_PACKAGE_DEPENDS
  "${LAMINATE_DEB_TCL} (= ${LAMINATE_DEB_VERSION}), tcl (>= 8.5)")
set(CPACK_DEBIAN_CLI_DESCRIPTION
"command-line program for laminated composite plates
${_laminate_about}

This package contains the program laminate: the ply-by-ply report of a
laminate under one load case, the first-ply failure of tables of load
cases, failure envelopes, pictures (SVG) and an HTML report, and the
bundled ply materials.")

# The Python package: the module laminate, for Debian's python3.
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME ${LAMINATE_DEB_PYTHON})
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_DESCRIPTION
"Python 3 module for laminated composite shells
${_laminate_about}

This package contains the Python module laminate: ply materials,
stacking sequences, stiffness matrices, ply results, first-ply failure
of NumPy arrays of load cases (the GIL released, on several threads) and
failure envelopes.")

include(CPack)
