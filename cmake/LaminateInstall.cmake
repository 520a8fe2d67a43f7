# What `cmake --install` lays out, relative to the prefix (<libdir> is
# lib/<multiarch triplet> on Debian, lib elsewhere; CMakeLists.txt):
#
#   <libdir>/liblaminate1.0.so.1.0.0 the one installed copy of the library,
#                                    with the links liblaminate1.0.so.1 (its
#                                    soname) and liblaminate1.0.so
#   lib/tcltk/Laminate1.0/           the Tcl package folder (tcl/package.cmake);
#                                    its pkgIndex.tcl loads the library above
#                                    by a path relative to itself
#   include/laminate/<floor>/*.h     the public headers
#   <libdir>/cmake/Laminate/         find_package(Laminate) files
#   <libdir>/pkgconfig/laminate.pc   for pkg-config
#   share/man/man3/*.3tcl.gz         the manual pages (doc/man)
#   share/doc/Laminate/              the documentation
#
# Every file that points at another does so relative to its own place, so
# the installed tree can be moved as a whole.  Each rule names the install
# component, and so the Debian package, its files belong to
# (cmake/LaminateDebian.cmake).

include(${CMAKE_CURRENT_LIST_DIR}/LaminateDebian.cmake)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(LAMINATE_CMAKE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Laminate
    CACHE STRING "Install folder of the CMake package files, relative to the prefix")
set(LAMINATE_PKGCONFIG_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    CACHE STRING "Install folder of laminate.pc, relative to the prefix")

# Headers that only the library's own sources use.  They are left out of the
# installed tree, so a public header that includes one fails the
# installed-headers test.
set(LAMINATE_INTERNAL_HEADERS
  linalg/reductions.h
  laminate/criteria.h
  analysis/criterion_path.h)

# The public floors.  tcl/ keeps its tcl.h-dependent headers to itself; its
# one public header gives C++ code the materials defined through the commands.
set(_laminate_public_headers tcl/materials.h)
foreach(_floor util linalg intvec laminate analysis)
  file(GLOB _found CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
       ${PROJECT_SOURCE_DIR}/${_floor}/*.h)
  list(APPEND _laminate_public_headers ${_found})
endforeach()
list(REMOVE_ITEM _laminate_public_headers ${LAMINATE_INTERNAL_HEADERS})
foreach(_header ${_laminate_public_headers})
  get_filename_component(_floor ${_header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${_header}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/laminate/${_floor}
    COMPONENT dev)
endforeach()

target_include_directories(laminate PUBLIC
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

# The library and its soname link are the runtime; the bare .so link, which
# only a linker reads, goes with the development files.  A shared library
# is not a program: no execute bits.
install(TARGETS laminate EXPORT LaminateTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
  COMPONENT runtime
  NAMELINK_COMPONENT dev)
install(EXPORT LaminateTargets
  NAMESPACE Laminate::
  FILE LaminateTargets.cmake
  DESTINATION ${LAMINATE_CMAKE_INSTALL_DIR}
  COMPONENT dev)

configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/LaminateConfig.cmake.in
  ${PROJECT_BINARY_DIR}/cmake/LaminateConfig.cmake
  INSTALL_DESTINATION ${LAMINATE_CMAKE_INSTALL_DIR}
  PATH_VARS LAMINATE_TCL_INSTALL_DIR)
# 1.x releases keep the C++ and Tcl interfaces of 1.0.
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/cmake/LaminateConfigVersion.cmake
  VERSION ${PROJECT_VERSION}
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/cmake/LaminateConfig.cmake
  ${PROJECT_BINARY_DIR}/cmake/LaminateConfigVersion.cmake
  DESTINATION ${LAMINATE_CMAKE_INSTALL_DIR}
  COMPONENT dev)

# laminate.pc finds the prefix from its own folder (${pcfiledir}).
file(RELATIVE_PATH LAMINATE_PC_TO_PREFIX
  /prefix/${LAMINATE_PKGCONFIG_INSTALL_DIR} /prefix)
string(REGEX REPLACE "/$" "" LAMINATE_PC_TO_PREFIX "${LAMINATE_PC_TO_PREFIX}")
get_filename_component(LAMINATE_TCL_PARENT_DIR ${LAMINATE_TCL_INSTALL_DIR} DIRECTORY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/laminate.pc.in
  ${PROJECT_BINARY_DIR}/cmake/laminate.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cmake/laminate.pc
  DESTINATION ${LAMINATE_PKGCONFIG_INSTALL_DIR}
  COMPONENT dev)

# The command reference, the report job's guide and its pictures, and this
# build's packaging notes.
file(GLOB _laminate_docs CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/doc/*.md ${PROJECT_SOURCE_DIR}/doc/*.svg)
laminate_install_docs(FILES ${_laminate_docs})
