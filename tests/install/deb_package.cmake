# cmake -DBUILD_DIR=<build> -DWORK=<dir> -DCPACK=<cpack> -DTCLSH=<tclsh>
#       -DTCL_RUN_ENV=<VAR=value;...> -DCHECK=<installed.tcl> -P deb_package.cmake
#
# Builds the Debian package of the build folder with cpack, checks its
# control fields and where it puts things, unpacks it with dpkg -x into a
# scratch root and loads the package from there.
find_program(DPKG_DEB dpkg-deb)
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
if(NOT DPKG_DEB OR NOT DPKG_SHLIBDEPS)
  message("SKIPPED: dpkg-deb or dpkg-shlibdeps not found (Debian package dpkg-dev)")
  return()
endif()

function(run)
  execute_process(COMMAND ${ARGN}
    OUTPUT_VARIABLE out ERROR_VARIABLE out RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${ARGN} failed (${rc}):\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CPACK} -G DEB -B ${WORK} --config ${BUILD_DIR}/CPackConfig.cmake)
file(GLOB deb ${WORK}/laminate_1.0*.deb)
list(LENGTH deb count)
if(NOT count EQUAL 1)
  message(FATAL_ERROR "expected one laminate_1.0*.deb in ${WORK}, found '${deb}'")
endif()

run(${DPKG_DEB} -f ${deb} Package Version Depends)
foreach(field "Package: laminate" "Version: 1.0" "libtcl8.6" "libc6" "libstdc")
  string(FIND "${out}" "${field}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the control fields lack '${field}':\n${out}")
  endif()
endforeach()

# The Tcl package folder must be on the auto_path of this system's tclsh.
run(${TCLSH} ${CMAKE_CURRENT_LIST_DIR}/auto_path.tcl)
set(tcl_auto_path "${out}")
run(${DPKG_DEB} --contents ${deb})
foreach(path
    usr/lib/tcltk/Laminate1.0/pkgIndex.tcl
    usr/include/laminate/linalg/matriu.h
    usr/lib/cmake/Laminate/LaminateConfig.cmake
    usr/share/man/mann/Laminate.n)
  string(FIND "${out}" "./${path}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the package lacks /${path}")
  endif()
endforeach()
string(FIND "\n${tcl_auto_path}\n" "\n/usr/lib/tcltk\n" at)
if(at EQUAL -1)
  message(FATAL_ERROR "/usr/lib/tcltk is not on tclsh's auto_path:\n${tcl_auto_path}")
endif()

set(root ${WORK}/root)
run(dpkg -x ${deb} ${root})
run(${CMAKE_COMMAND} -E env TCLLIBPATH=${root}/usr/lib/tcltk ${TCL_RUN_ENV}
    ${TCLSH} ${CHECK} ${root}/usr)
message(STATUS "${deb}: ${out}")
