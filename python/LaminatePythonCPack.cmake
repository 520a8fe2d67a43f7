# Read by cpack through the project config file (cmake/LaminatePackaging.cmake)
# with LAMINATE_PYTHON_MODULE_FILE, LAMINATE_LIBRARY_DIR and LAMINATE_SHLIBS
# set: the dependencies of python3-laminate are those dpkg-shlibdeps finds
# for the binary module (the library's own package through its shlibs file,
# the C and C++ runtimes), the Python it was built for and NumPy.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
find_program(LAMINATE_DPKG_SHLIBDEPS dpkg-shlibdeps)
set(_work "${CPACK_PACKAGE_DIRECTORY}/_CPack_Packages/shlibdeps-python")
file(REMOVE_RECURSE "${_work}")
file(WRITE "${_work}/debian/control" "")
execute_process(
  COMMAND ${LAMINATE_DPKG_SHLIBDEPS} -O "-L${LAMINATE_SHLIBS}" "-l${LAMINATE_LIBRARY_DIR}"
          "${LAMINATE_PYTHON_MODULE_FILE}"
  WORKING_DIRECTORY "${_work}"
  OUTPUT_VARIABLE _out ERROR_VARIABLE _err RESULT_VARIABLE _rc
  OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT _rc EQUAL 0 OR NOT _out MATCHES "^shlibs:Depends=(.+)$")
  message(FATAL_ERROR "dpkg-shlibdeps ${LAMINATE_PYTHON_MODULE_FILE} failed (${_rc}):\n${_out}\n${_err}")
endif()
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${CMAKE_MATCH_1}, ${LAMINATE_PYTHON_DEPENDS}")
file(REMOVE_RECURSE "${_work}")
