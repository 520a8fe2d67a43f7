# cmake -DDEBS=<dir> -DWORK=<dir> -DTCLSH=<tclsh> -DTCL_RUN_ENV=<VAR=value;...>
#       -DCHECK=<installed.tcl> -DAUTO_PATH=<auto_path.tcl> -DREADELF=<readelf>
#       -DLIBDIR=<lib/...> -DMAINTAINER=<Name <address>> -P deb_package.cmake
#
# Checks the Debian packages that deb_build.cmake made in DEBS: their
# names, control fields and control files, where they put things, that no
# two of them hold the same file, that the Tcl packages load from a dpkg -x
# root of the runtime and Tcl packages alone (no development link), and that
# the program runs from that root with its own package added.
cmake_policy(VERSION 3.20)
find_program(DPKG_DEB dpkg-deb)
if(NOT DPKG_DEB)
  message("SKIPPED: dpkg-deb not found (Debian package dpkg-dev)")
  return()
endif()

function(run)
  execute_process(COMMAND ${ARGN}
    OUTPUT_VARIABLE out ERROR_VARIABLE out RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command} failed (${rc}):\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

function(expect text what)
  foreach(item ${ARGN})
    string(FIND "${text}" "${item}" at)
    if(at EQUAL -1)
      message(FATAL_ERROR "${what} lacks '${item}':\n${text}")
    endif()
  endforeach()
endfunction()

function(refuse text what)
  foreach(item ${ARGN})
    string(FIND "${text}" "${item}" at)
    if(NOT at EQUAL -1)
      message(FATAL_ERROR "${what} has '${item}':\n${text}")
    endif()
  endforeach()
endfunction()

set(version 1.0-2)
execute_process(COMMAND dpkg --print-architecture
  OUTPUT_VARIABLE arch OUTPUT_STRIP_TRAILING_WHITESPACE)
set(runtime liblaminate1.0-1)
set(dev liblaminate1.0-dev)
set(tcl tcl-laminate)
set(doc laminate-doc)
set(python python3-laminate)
set(cli laminate)
set(packages ${runtime} ${dev} ${tcl} ${doc} ${cli})
# The Python package is made where the module is built (pybind11, NumPy).
if(EXISTS ${DEBS}/${python}_${version}_${arch}.deb)
  list(APPEND packages ${python})
endif()

file(GLOB found RELATIVE ${DEBS} ${DEBS}/*.deb)
list(SORT found)
set(wanted ${doc}_${version}_all.deb ${cli}_${version}_all.deb ${runtime}_${version}_${arch}.deb
    ${dev}_${version}_${arch}.deb ${tcl}_${version}_${arch}.deb)
if(python IN_LIST packages)
  list(APPEND wanted ${python}_${version}_${arch}.deb)
endif()
list(SORT wanted)
if(NOT found STREQUAL wanted)
  message(FATAL_ERROR "expected the packages ${wanted} in ${DEBS}, found '${found}'")
endif()
foreach(p ${packages})
  file(GLOB deb_${p} ${DEBS}/${p}_*.deb)
endforeach()

# Control fields, one package at a time.
foreach(p ${packages})
  run(${DPKG_DEB} -f ${deb_${p}})
  set(control_${p} "${out}")
  expect("${out}" "${p}'s control fields" "Package: ${p}\n" "Version: ${version}\n"
         "Source: laminate\n" "Maintainer: ${MAINTAINER}\n" "Priority: optional\n"
         "Description: ")
  # The extended description: at least one line after the synopsis.
  if(NOT out MATCHES "Description: [^\n]+\n [^\n]+")
    message(FATAL_ERROR "${p} has no extended description:\n${out}")
  endif()
endforeach()
expect("${control_${runtime}}" "${runtime}'s control fields" "Section: libs\n" "libc6" "libstdc++6")
# The library binds to Tcl through the stub table only: no Tcl dependency.
string(REGEX MATCH "Depends: [^\n]*" depends "${control_${runtime}}")
refuse("${depends}" "${runtime}'s Depends" "tcl")
expect("${control_${dev}}" "${dev}'s control fields" "Section: libdevel\n"
       "Depends: ${runtime} (= ${version})" "Breaks: laminate (<< ${version})"
       "Replaces: laminate (<< ${version})")
expect("${control_${tcl}}" "${tcl}'s control fields" "Section: interpreters\n"
       "${runtime} (= ${version})" "tcl (>= 8.5)" "Replaces: laminate (<< ${version})")
expect("${control_${doc}}" "${doc}'s control fields" "Section: doc\n" "Architecture: all\n")
expect("${control_${cli}}" "${cli}'s control fields" "Section: science\n" "Architecture: all\n"
       "Depends: ${tcl} (= ${version}), tcl (>= 8.5)")

# Control files of the runtime: the ldconfig trigger and the shlibs entry,
# and no maintainer script (the trigger runs ldconfig).
set(control ${WORK}/control)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
run(${DPKG_DEB} --control ${deb_${runtime}} ${control})
file(GLOB scripts RELATIVE ${control} ${control}/pre* ${control}/post*)
if(scripts)
  message(FATAL_ERROR "${runtime} has maintainer scripts: ${scripts}")
endif()
file(READ ${control}/triggers triggers)
expect("${triggers}" "${runtime}'s triggers" "activate-noawait ldconfig")
file(READ ${control}/shlibs shlibs)
expect("${shlibs}" "${runtime}'s shlibs" "liblaminate1.0 1 ${runtime} (>= 1.0)")

# Contents.  Every package has its copyright file and compressed changelog.
set(lib usr/${LIBDIR})
set(paths_${runtime}
  ${lib}/liblaminate1.0.so.1.0.0 "${lib}/liblaminate1.0.so.1 -> liblaminate1.0.so.1.0.0")
set(paths_${dev}
  "${lib}/liblaminate1.0.so -> liblaminate1.0.so.1"
  usr/include/laminate/linalg/matriu.h usr/include/laminate/tcl/materials.h
  ${lib}/cmake/Laminate/LaminateConfig.cmake ${lib}/pkgconfig/laminate.pc)
set(paths_${tcl}
  usr/lib/tcltk/Laminate1.0/pkgIndex.tcl
  "usr/lib/tcltk/Laminate1.0/liblaminate_analysis1.0.so -> "
  usr/share/man/man3/Laminate.3tcl.gz usr/share/man/man3/laminate_analysis.3tcl.gz
  "usr/share/man/man3/laminate_results.3tcl.gz -> Laminate.3tcl.gz"
  "usr/share/man/man3/laminate::evaluate.3tcl.gz -> laminate_analysis.3tcl.gz"
  usr/lib/tcltk/Laminate1.0/report/report.tcl usr/share/man/man3/laminate_report.3tcl.gz
  "usr/share/man/man3/laminate::report::rate.3tcl.gz -> laminate_report.3tcl.gz"
  usr/lib/tcltk/Laminate1.0/examples/laminate_report.tcl)
set(paths_${cli} usr/bin/laminate usr/share/man/man1/laminate.1.gz)
set(paths_${doc}
  usr/share/doc/${doc}/commands.md usr/share/doc/${doc}/analysis.md
  usr/share/doc/${doc}/report.md usr/share/doc/${doc}/packaging.md
  usr/share/doc/${doc}/html/Laminate.html usr/share/doc/${doc}/html/laminate.html)
set(paths_${python}
  usr/lib/python3/dist-packages/laminate/__init__.py usr/lib/python3/dist-packages/laminate/materials.lam)
set(all_files)
foreach(p ${packages})
  list(APPEND paths_${p}
    usr/share/doc/${p}/copyright usr/share/doc/${p}/changelog.Debian.gz)
  run(${DPKG_DEB} --contents ${deb_${p}})
  set(contents "${out}")
  foreach(path ${paths_${p}})
    string(FIND "${contents}" " ./${path}" at)
    if(at EQUAL -1)
      message(FATAL_ERROR "${p} lacks /${path}:\n${contents}")
    endif()
  endforeach()
  # No file in two packages (folders may be shared).
  string(REGEX MATCHALL " \\./[^\n]*[^/\n]\n" files "${contents}")
  foreach(f ${files})
    string(REGEX REPLACE " -> .*" "" f "${f}")
    string(STRIP "${f}" f)
    if(f IN_LIST all_files)
      message(FATAL_ERROR "${f} is in ${p} and in another package")
    endif()
    list(APPEND all_files "${f}")
  endforeach()
endforeach()
run(${DPKG_DEB} --contents ${deb_${runtime}})
refuse("${out}" "${runtime}" "liblaminate1.0.so ->")

# The Tcl package folder must be on the auto_path of this system's tclsh.
run(${TCLSH} ${AUTO_PATH})
string(FIND "\n${out}\n" "\n/usr/lib/tcltk\n" at)
if(at EQUAL -1)
  message(FATAL_ERROR "/usr/lib/tcltk is not on tclsh's auto_path:\n${out}")
endif()

# The runtime and Tcl packages alone: the library as packaged (soname, no
# run path) and both Tcl packages loaded from it.
set(root ${WORK}/root)
run(dpkg -x ${deb_${runtime}} ${root})
run(dpkg -x ${deb_${tcl}} ${root})
run(${READELF} -d ${root}/${lib}/liblaminate1.0.so.1.0.0)
expect("${out}" "the packaged library's dynamic section" "Library soname: [liblaminate1.0.so.1]")
refuse("${out}" "the packaged library's dynamic section" "(RPATH)" "(RUNPATH)")
run(${CMAKE_COMMAND} -E env TCLLIBPATH=${root}/usr/lib/tcltk ${TCL_RUN_ENV}
    ${TCLSH} ${CHECK} ${root}/usr)
message(STATUS "${runtime} and ${tcl}: ${out}")

# The program from the same root, its own package added: it finds the Tcl
# packages under the root by its own place, with nothing on TCLLIBPATH.
run(dpkg -x ${deb_${cli}} ${root})
run(${CMAKE_COMMAND} -E env TCLLIBPATH= ${TCL_RUN_ENV}
    ${TCLSH} ${root}/usr/bin/laminate rate --check)
expect("${out}" "laminate rate from the packages" "Laminate: bundled"
       "No assessed ply fails under these loads.")
message(STATUS "${cli}: laminate rate runs from the unpacked packages")
