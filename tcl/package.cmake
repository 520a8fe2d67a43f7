# Tcl packaging of the laminate library: a pkgIndex.tcl beside the built
# library, so the build folder itself is a package folder
# (TCLLIBPATH=<build> tclsh finds "package require Laminate"), and install
# rules that lay out the same folder as <prefix>/lib/tcltk/Laminate1.0.
#
# The index loads the library relative to $dir, so one text serves both the
# build folder and the installed folder.

set(LAMINATE_TCL_PACKAGE Laminate)
set(LAMINATE_TCL_VERSION ${PROJECT_VERSION})
set(LAMINATE_TCL_DIRNAME ${LAMINATE_TCL_PACKAGE}${LAMINATE_TCL_VERSION})

# Tcl's load takes one entry-point prefix per library file, so the companion
# package loads the same library through a symbolic link of another name.
# The dynamic loader maps a file once, whatever name it is opened by, so both
# packages share one library and one material registry.
set(LAMINATE_ANALYSIS_LINK liblaminate_analysis${LAMINATE_TCL_VERSION}.so)
add_custom_command(TARGET laminate POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E create_symlink $<TARGET_FILE_NAME:laminate>
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
    [list load [file join $dir $<TARGET_FILE_NAME:laminate>] ${LAMINATE_TCL_PACKAGE}]
if {![package vsatisfies [package provide Tcl] 8.5]} {return}
package ifneeded laminate::analysis ${LAMINATE_TCL_VERSION} \\
    [list load [file join $dir ${LAMINATE_ANALYSIS_LINK}] Laminate_analysis]
")

file(GENERATE
  OUTPUT $<TARGET_FILE_DIR:laminate>/pkgIndex.tcl
  CONTENT "${_laminate_pkgindex}")

# The installed copy is generated apart from the build one so that the
# install rule never depends on where the library was built.
file(GENERATE
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/install/pkgIndex.tcl
  CONTENT "${_laminate_pkgindex}")

# <prefix>/lib/tcltk is on the auto_path of Debian's tclsh for the default
# /usr/local prefix; tclsh scans its subfolders for pkgIndex.tcl.  With any
# other prefix, add <prefix>/lib/tcltk to TCLLIBPATH or auto_path.
set(LAMINATE_TCL_INSTALL_DIR lib/tcltk/${LAMINATE_TCL_DIRNAME}
    CACHE STRING "Install folder of the Tcl package, relative to the prefix")

install(TARGETS laminate
  LIBRARY DESTINATION ${LAMINATE_TCL_INSTALL_DIR}
  COMPONENT tcl)
install(CODE "file(CREATE_LINK $<TARGET_FILE_NAME:laminate>
  \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${LAMINATE_TCL_INSTALL_DIR}/${LAMINATE_ANALYSIS_LINK}\" SYMBOLIC)"
  COMPONENT tcl)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/install/pkgIndex.tcl
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}
  COMPONENT tcl)

# The command reference and the example travel with the package.
install(FILES ${PROJECT_SOURCE_DIR}/doc/commands.md ${PROJECT_SOURCE_DIR}/doc/analysis.md
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}/doc
  COMPONENT tcl)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/examples/laminate_report.tcl
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}/examples
  COMPONENT tcl)
install(FILES ${PROJECT_SOURCE_DIR}/examples/cross_ply.rec
  DESTINATION ${LAMINATE_TCL_INSTALL_DIR}/examples
  COMPONENT tcl)
