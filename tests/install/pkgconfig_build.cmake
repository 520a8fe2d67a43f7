# cmake -DPREFIX=<prefix> -DWORK=<dir> -DCXX=<compiler> -DFLAGS=<flags>
#       -DSOURCE=<program.cpp> -P pkgconfig_build.cmake
#
# Builds SOURCE with the flags pkg-config gives for the installed laminate.pc
# and runs it.  The libdir it names must be the prefix's, wherever that is.
find_program(PKG_CONFIG pkg-config)
if(NOT PKG_CONFIG)
  message("SKIPPED: pkg-config not found (Debian package pkgconf)")
  return()
endif()
set(ENV{PKG_CONFIG_PATH} ${PREFIX}/lib/pkgconfig)
set(ENV{PKG_CONFIG_LIBDIR} ${PREFIX}/lib/pkgconfig)

function(pkg_config out)
  execute_process(COMMAND ${PKG_CONFIG} ${ARGN} laminate
    OUTPUT_VARIABLE value OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "pkg-config ${ARGN} laminate failed")
  endif()
  separate_arguments(value UNIX_COMMAND "${value}")
  set(${out} ${value} PARENT_SCOPE)
endfunction()

pkg_config(version --modversion)
if(NOT version STREQUAL "1.0")
  message(FATAL_ERROR "laminate.pc gives version ${version}")
endif()
pkg_config(libdir --variable=libdir)
get_filename_component(libdir ${libdir} REALPATH)
get_filename_component(prefix ${PREFIX} REALPATH)
if(NOT libdir STREQUAL "${prefix}/lib")
  message(FATAL_ERROR "laminate.pc names libdir ${libdir}, not ${prefix}/lib")
endif()
pkg_config(flags --cflags --libs)

separate_arguments(extra UNIX_COMMAND "${FLAGS}")
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
execute_process(
  COMMAND ${CXX} -std=c++17 ${extra} ${SOURCE} ${flags} -Wl,-rpath,${libdir}
          -o ${WORK}/program
  RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "building with the flags of laminate.pc failed: ${flags}")
endif()
execute_process(COMMAND ${WORK}/program
  OUTPUT_VARIABLE out RESULT_VARIABLE rc)
if(NOT rc EQUAL 0 OR NOT out STREQUAL "ok\n")
  message(FATAL_ERROR "the program built with pkg-config printed '${out}' (${rc})")
endif()
message(STATUS "built and ran with: ${flags}")
