# cmake -DLIBRARY=<liblaminate> -DNM=<nm> -DREADELF=<readelf> -P exports.cmake
#
# The dynamic interface of the built library: its soname, and the symbols it
# exports (nm -D --defined-only -C).  Nothing of Boost and nothing owned by
# the standard library may be exported; the library's own API must be, from
# every floor: the linear algebra in vantrel and the global namespace, the
# error writer, the laminate model, the analysis classes
# (in laminate::analysis), the Tcl entry points and the registry's host API.

cmake_policy(VERSION 3.20)

function(run)
  execute_process(COMMAND ${ARGN}
    OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${ARGN} failed (${rc}):\n${err}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

run(${READELF} -d ${LIBRARY})
if(NOT out MATCHES "\\(SONAME\\)[^\n]*\\[liblaminate1\\.0\\.so\\.1\\]")
  message(FATAL_ERROR "the soname of ${LIBRARY} is not liblaminate1.0.so.1:\n${out}")
endif()

run(${NM} -D --defined-only -C ${LIBRARY})
# "<address> <type> <name>" a line; names may hold spaces.
string(REGEX REPLACE "(^|\n)[0-9a-f]+ [A-Za-z] " "\\1" names "${out}")
string(REPLACE ";" "\\;" names "${names}")
string(REPLACE "\n" ";" names "${names}")
list(REMOVE_ITEM names "")
list(LENGTH names count)

# Owned by Boost or the standard library: the name itself, or what a
# vtable, type information, thunk or guard variable is for, or a function
# template's name after its return type.
set(prefix "(typeinfo for |typeinfo name for |vtable for |VTT for |construction vtable for |guard variable for |(non-)?virtual thunk to |[a-z_:<>]+ )?")
set(foreign)
foreach(name IN LISTS names)
  if(name MATCHES "boost::" OR name MATCHES "^${prefix}(std|__gnu_cxx|__cxxabiv1)::")
    list(APPEND foreign "${name}")
  endif()
endforeach()
if(foreign)
  list(JOIN foreign "\n  " foreign)
  message(FATAL_ERROR "the library exports symbols that are not its own:\n  ${foreign}")
endif()

# One or more symbols of every part of the API, as regular expressions on
# whole demangled names.
set(expected
  "Laminate_Init"
  "Laminate_analysis_Init"
  "vantrel::Matriu::Matriu\\(int, int\\)"
  "vantrel::Matriu::LinSolve\\(vantrel::ReaVecV&, vantrel::ReaVecV&\\)"
  "vantrel::ReaVecV::ReaVecV\\(int\\)"
  "vantrel::operator\\*\\(vantrel::Matriu const&, vantrel::Matriu const&\\)"
  "typeinfo for vantrel::ReaVecV"
  "vtable for vantrel::ReaVecVT"
  "IntVec::IntVec\\(unsigned int\\)"
  "vtable for IntVec"
  "SortVec::SortVec\\(unsigned int\\)"
  "operator\\+\\(IntVec const&, IntVec const&\\)"
  "QSort\\(IntVec&\\)"
  "BSearch\\(IntVec&, int\\)"
  "LSearch\\(IntVec&, int\\)"
  "errorwriter"
  "ErrorWriter::WriteErrorAndQuit\\(\\)"
  "stprintf\\(std::ostream&, char const\\*, \\.\\.\\.\\)"
  "lamina1::LeerCampoMater\\(char\\*, double, double, double\\)"
  "lam_mat::lam_mat\\(char\\*\\)"
  "StrictRecord::read\\(char const\\*, unsigned long\\)"
  "laminate_model::plyData\\(lamina1 const&, int\\)"
  "laminate::analysis::LaminateAnalysis::LaminateAnalysis\\(lamina1&\\)"
  "laminate::analysis::LaminateAnalysis::evaluate\\(double const\\*, laminate::analysis::Evaluation&\\) const"
  "laminate_find_material\\(char const\\*\\)"
  "laminate_results_cb\\(void\\*, Tcl_Interp\\*, int, Tcl_Obj\\* const\\*\\)"
  "find_material\\(Tcl_Interp\\*, Tcl_Obj\\*\\)"
  "reset_registry\\(\\)")
set(missing)
foreach(pattern IN LISTS expected)
  set(found FALSE)
  foreach(name IN LISTS names)
    if(name MATCHES "^${pattern}$")
      set(found TRUE)
      break()
    endif()
  endforeach()
  if(NOT found)
    list(APPEND missing "${pattern}")
  endif()
endforeach()
if(missing)
  list(JOIN missing "\n  " missing)
  message(FATAL_ERROR "the library does not export:\n  ${missing}")
endif()
list(LENGTH expected checked)
message(STATUS "${count} symbols exported, none of Boost or the standard library; "
               "${checked} of the API checked")
