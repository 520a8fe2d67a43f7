# cmake -DBUILD_DIR=<build> -DWORK=<dir> -DCPACK=<cpack> -P deb_build.cmake
#
# Builds the Debian packages of the build folder with cpack into WORK, for
# deb_package.cmake and lintian.sh to check.
cmake_policy(VERSION 3.20)
find_program(DPKG_DEB dpkg-deb)
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
file(REMOVE_RECURSE ${WORK})
if(NOT DPKG_DEB OR NOT DPKG_SHLIBDEPS)
  message("SKIPPED: dpkg-deb or dpkg-shlibdeps not found (Debian package dpkg-dev)")
  return()
endif()

execute_process(
  COMMAND ${CPACK} -G DEB -B ${WORK} --config ${BUILD_DIR}/CPackConfig.cmake
  OUTPUT_VARIABLE out ERROR_VARIABLE out RESULT_VARIABLE rc)
if(NOT rc EQUAL 0 OR out MATCHES "CPack Warning")
  message(FATAL_ERROR "cpack failed or warned (${rc}):\n${out}")
endif()
file(GLOB debs RELATIVE ${WORK} ${WORK}/*.deb)
list(SORT debs)
message(STATUS "built: ${debs}")
