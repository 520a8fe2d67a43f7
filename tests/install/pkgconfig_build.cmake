# cmake -DPREFIX=<prefix> -DPCDIR=<pkgconfig folder, relative to PREFIX>
#       -DWORK=<dir> -DCXX=<compiler> -DFLAGS=<flags>
#       -DSOURCE=<program.cpp> -P pkgconfig_build.cmake
#
# Builds SOURCE with the flags pkg-config gives for the installed laminate.pc
# (its libdir as run path) and runs it.
find_program(PKG_CONFIG pkg-config)
if(NOT PKG_CONFIG)
  message("SKIPPED: pkg-config not found (Debian package pkgconf)")
  return()
endif()
set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${PCDIR})
set(ENV{PKG_CONFIG_LIBDIR} ${PREFIX}/${PCDIR})

execute_process(COMMAND ${PKG_CONFIG} --cflags --libs laminate
  OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE rc)
execute_process(COMMAND ${PKG_CONFIG} --variable=libdir laminate
  OUTPUT_VARIABLE libdir OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "pkg-config finds no laminate in ${PREFIX}")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")

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
