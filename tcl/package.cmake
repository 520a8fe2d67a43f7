# Tcl packaging of the laminate library: a pkgIndex.tcl beside the built
# library, so the build folder itself is a package folder
# (TCLLIBPATH=<build> tclsh finds "package require Laminate"), and install
# rules for the package folder <prefix>/lib/tcltk/Laminate1.0.
#
# The library itself is installed once, in <prefix>/<libdir>, where C++
# programs link it (cmake/LaminateInstall.cmake).  Both indexes load it by
# its soname (liblaminate1.0.so.1, in the runtime package, unlike the bare
# liblaminate1.0.so link that only the development files hold) and find it
# relative to $dir: beside the index in the build folder, by the relative
# path from the package folder to <libdir> once installed, so a moved prefix
# keeps working.  The companion's link (below) lies beside the index in both.

set(LAMINATE_TCL_PACKAGE Laminate)
set(LAMINATE_TCL_VERSION ${PROJECT_VERSION})
set(LAMINATE_TCL_DIRNAME ${LAMINATE_TCL_PACKAGE}${LAMINATE_TCL_VERSION})

# Tcl's load takes one entry-point prefix per library file, so the companion
# package loads the same library through a symbolic link of another name.
# The dynamic loader maps a file once, whatever name it is opened by, so both
# packages share one library and one material registry.
set(LAMINATE_ANALYSIS_LINK liblaminate_analysis${LAMINATE_TCL_VERSION}.so)
add_custom_command(TARGET laminate POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E create_symlink $<TARGET_SONAME_FILE_NAME:laminate>
          $<TARGET_FILE_DIR:laminate>/${LAMINATE_ANALYSIS_LINK}
  VERBATIM)

set(_laminate_pkgindex
"# Tcl package index for ${LAMINATE_TCL_PACKAGE} ${LAMINATE_TCL_VERSION} and its companion
# laminate::analysis ${LAMINATE_TCL_VERSION}, both in one library.  Laminate's entry point
# is Laminate_Init and needs Tcl 8.3 or later in the 8 series; the companion's is
# Laminate_analysis_Init and needs 8.5 (dicts, ensembles).  The guards use the
# plain \"8.3\" form of vsatisfies, which every 8.x interpreter reads.
if {![package vsatisfies [package provide Tcl] 8.3]} {return}
package ifneeded ${LAMINATE_TCL_PACKAGE} ${LAMINATE_TCL_VERSION} \\
    [list load [file join @LIBDIR@ $<TARGET_SONAME_FILE_NAME:laminate>] ${LAMINATE_TCL_PACKAGE}]
if {![package vsatisfies [package provide Tcl] 8.5]} {return}
# ::laminate::library names the package folder, where the bundled material
# library lies.
package ifneeded laminate::analysis ${LAMINATE_TCL_VERSION} \\
    \"[list load [file join $dir ${LAMINATE_ANALYSIS_LINK}] Laminate_analysis]
    [list set ::laminate::library [file normalize $dir]]\"
# The report package is Tcl only: its scripts lie in report/ beside this file.
package ifneeded laminate::report ${LAMINATE_TCL_VERSION} \\
    [list source -encoding utf-8 [file join $dir report report.tcl]]
")

string(REPLACE "@LIBDIR@" "$dir"
  _laminate_build_pkgindex "${_laminate_pkgindex}")
file(GENERATE
  OUTPUT $<TARGET_FILE_DIR:laminate>/pkgIndex.tcl
  CONTENT "${_laminate_build_pkgindex}")

# The installed index and link are made apart from the build ones so that
# the install rules never depend on where the library was built.
set(LAMINATE_TCL_INSTALL_DIR lib/tcltk/${LAMINATE_TCL_DIRNAME}
    CACHE STRING "Install folder of the Tcl package, relative to the prefix")
include(GNUInstallDirs)
file(RELATIVE_PATH _laminate_index_to_lib
  /prefix/${LAMINATE_TCL_INSTALL_DIR} /prefix/${CMAKE_INSTALL_LIBDIR})
string(REGEX REPLACE "/$" "" _laminate_index_to_lib "${_laminate_index_to_lib}")
string(REPLACE "@LIBDIR@" "[file normalize [file join $dir ${_laminate_index_to_lib}]]"
  _laminate_install_pkgindex "${_laminate_pkgindex}")
file(GENERATE
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/install/pkgIndex.tcl
  CONTENT "${_laminate_install_pkgindex}")
get_target_property(_laminate_output_name laminate OUTPUT_NAME)
get_target_property(_laminate_soversion laminate SOVERSION)
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/install)
file(CREATE_LINK
  ${_laminate_index_to_lib}/${CMAKE_SHARED_LIBRARY_PREFIX}${_laminate_output_name}${CMAKE_SHARED_LIBRARY_SUFFIX}.${_laminate_soversion}
  ${CMAKE_CURRENT_BINARY_DIR}/install/${LAMINATE_ANALYSIS_LINK} SYMBOLIC)

# <prefix>/lib/tcltk is on the auto_path of Debian's tclsh for the prefixes
# /usr and /usr/local; tclsh scans its subfolders for pkgIndex.tcl.  With
# any other prefix, add <prefix>/lib/tcltk to TCLLIBPATH or auto_path.
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/install/pkgIndex.tcl
              ${CMAKE_CURRENT_BINARY_DIR}/install/${LAMINATE_ANALYSIS_LINK}
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}
  COMPONENT tcl)

# The bundled material library (laminate::material load bundled) lies beside
# the index: copied into the build folder, installed into the package folder.
set(LAMINATE_MATERIAL_LIBRARY ${PROJECT_SOURCE_DIR}/data/materials.lam)
add_custom_command(
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/materials.lam
  COMMAND ${CMAKE_COMMAND} -E copy ${LAMINATE_MATERIAL_LIBRARY}
          ${CMAKE_CURRENT_BINARY_DIR}/materials.lam
  DEPENDS ${LAMINATE_MATERIAL_LIBRARY}
  VERBATIM)
add_custom_target(laminate_material_library ALL
  DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/materials.lam)
install(FILES ${LAMINATE_MATERIAL_LIBRARY}
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}
  COMPONENT tcl)

# The report package's scripts: copied into report/ of the build folder
# (beside the index that names them), installed into report/ of the package
# folder.
file(GLOB LAMINATE_REPORT_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/report/*.tcl)
set(_laminate_report_copies)
foreach(_source ${LAMINATE_REPORT_SOURCES})
  get_filename_component(_name ${_source} NAME)
  set(_copy ${CMAKE_CURRENT_BINARY_DIR}/report/${_name})
  add_custom_command(
    OUTPUT ${_copy}
    COMMAND ${CMAKE_COMMAND} -E copy ${_source} ${_copy}
    DEPENDS ${_source}
    VERBATIM)
  list(APPEND _laminate_report_copies ${_copy})
endforeach()
install(FILES ${LAMINATE_REPORT_SOURCES}
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}/report
  COMPONENT tcl)

# The command-line program: bin/laminate of the build folder runs on the
# build folder's packages, and <prefix>/bin/laminate on those of
# <prefix>/lib/tcltk (it finds either relative to itself).  Its own
# install component and Debian package (cmake/LaminateDebian.cmake).
set(LAMINATE_PROGRAM ${PROJECT_SOURCE_DIR}/bin/laminate)
add_custom_command(
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/bin/laminate
  COMMAND ${CMAKE_COMMAND} -E copy ${LAMINATE_PROGRAM} ${CMAKE_CURRENT_BINARY_DIR}/bin/laminate
  DEPENDS ${LAMINATE_PROGRAM}
  VERBATIM)
add_custom_target(laminate_report_package ALL
  DEPENDS ${_laminate_report_copies} ${CMAKE_CURRENT_BINARY_DIR}/bin/laminate)
install(PROGRAMS ${LAMINATE_PROGRAM}
  DESTINATION ${CMAKE_INSTALL_BINDIR}
  COMPONENT cli)

# Short examples of the report package travel with it; the documentation
# is installed with the rest of it (cmake/LaminateInstall.cmake).
install(PROGRAMS ${PROJECT_SOURCE_DIR}/examples/laminate_report.tcl
                 ${PROJECT_SOURCE_DIR}/examples/make_cases.tcl
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}/examples
  COMPONENT tcl)
install(FILES ${PROJECT_SOURCE_DIR}/examples/cross_ply.rec
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}/examples
  COMPONENT tcl)
