# A Debian package through CPack: "cpack -G DEB" in the build folder writes
# laminate_<version>-<release>_<arch>.deb.  It installs under /usr, so the
# library lands in Debian's library path and the Tcl package folder in
# /usr/lib/tcltk, which Debian's tclsh has on its auto_path: after
# "apt install ./laminate_1.0-1_amd64.deb", "package require Laminate" works.
#
# One package holds everything (library, Tcl index, headers, CMake and
# pkg-config files, manual pages): the library is small and its C++ users
# need all of it.

set(CPACK_PACKAGE_NAME laminate)
set(CPACK_PACKAGE_VENDOR "Laminate developers")
set(CPACK_PACKAGE_CONTACT "Laminate developers <laminate@localhost>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "Tcl package and C++ library for layered composite shells")
set(CPACK_PACKAGE_DESCRIPTION
"Laminate evaluates laminated composite shells by classical laminated-plate
theory with first-order transverse shear: ply stiffness, the A, B, D and H
matrices, ply stresses and strains, and the Tsai-Wu, Hashin and LaRC04
failure criteria.  It provides the Tcl packages Laminate and
laminate::analysis, and the C++ library beneath them (dense matrices and
vectors, the laminate model and the analysis classes) with its headers,
CMake package and pkg-config file.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Debug information stays in the build folder.
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION interpreters)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The C and C++ runtimes come from dpkg-shlibdeps.  The library reaches Tcl
# only through the stub table of the interpreter that loads it, so no Tcl
# library appears among its own dependencies: the Tcl runtime is named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libtcl8.6 (>= 8.6.0)")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "tcl8.6")

include(CPack)
