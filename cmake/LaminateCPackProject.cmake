# Read by cpack (CPACK_PROJECT_CONFIG_FILE), once per generator, with
# LAMINATE_LIBRARY set to the built library.  For the Debian packages it
# asks dpkg-shlibdeps which packages the library needs (the C and C++
# runtimes, and the sanitizer runtimes in an instrumented build) and makes
# them the runtime package's dependencies.

if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()

find_program(LAMINATE_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(NOT LAMINATE_DPKG_SHLIBDEPS)
  message(FATAL_ERROR "dpkg-shlibdeps not found: install the Debian package dpkg-dev")
endif()

# dpkg-shlibdeps wants to run beside a debian/control; an empty one will do.
set(_work "${CPACK_PACKAGE_DIRECTORY}/_CPack_Packages/shlibdeps")
file(REMOVE_RECURSE "${_work}")
file(WRITE "${_work}/debian/control" "")
execute_process(
  COMMAND ${LAMINATE_DPKG_SHLIBDEPS} -O "${LAMINATE_LIBRARY}"
  WORKING_DIRECTORY "${_work}"
  OUTPUT_VARIABLE _out
  ERROR_VARIABLE _err
  RESULT_VARIABLE _rc
  OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT _rc EQUAL 0 OR NOT _out MATCHES "^shlibs:Depends=(.+)$")
  message(FATAL_ERROR "dpkg-shlibdeps ${LAMINATE_LIBRARY} failed (${_rc}):\n${_out}\n${_err}")
endif()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "${CMAKE_MATCH_1}")
file(REMOVE_RECURSE "${_work}")
