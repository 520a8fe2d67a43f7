# The libraries the build compiles and links against, each checked at
# configure time.  A missing one stops the configure step with the Debian
# package that brings it; scripts/deps.sh installs every one of them.

function(laminate_missing what)
  list(JOIN ARGN " " packages)
  message(FATAL_ERROR "${what} not found: apt-get install ${packages} "
    "(Debian; scripts/deps.sh installs everything the build needs)")
endfunction()

# Tcl: the headers and the stub library the extension links (FindTclStub
# sets no *_FOUND and ignores REQUIRED, so its results are checked here),
# and tclsh for the Tcl tests.
find_package(TclStub)
if(NOT TCL_INCLUDE_PATH OR NOT EXISTS "${TCL_INCLUDE_PATH}/tcl.h")
  laminate_missing("tcl.h (Tcl headers)" tcl8.6-dev)
endif()
if(NOT TCL_STUB_LIBRARY)
  laminate_missing("The Tcl stub library (libtclstub8.6.a)" tcl8.6-dev)
endif()
if((NOT DEFINED BUILD_TESTING OR BUILD_TESTING) AND NOT TCL_TCLSH)
  laminate_missing("tclsh" tcl8.6)
endif()

# Boost: header-only, for the bracketing root finder of the first-ply
# failure search.
find_package(Boost 1.74 QUIET)
if(NOT Boost_FOUND)
  laminate_missing("Boost 1.74 or later (headers)" libboost-dev)
endif()
include(CheckIncludeFileCXX)
set(CMAKE_REQUIRED_INCLUDES ${Boost_INCLUDE_DIRS})
set(CMAKE_REQUIRED_QUIET ON)
check_include_file_cxx(boost/math/tools/toms748_solve.hpp
  LAMINATE_HAVE_BOOST_TOMS748)
unset(CMAKE_REQUIRED_INCLUDES)
unset(CMAKE_REQUIRED_QUIET)
if(NOT LAMINATE_HAVE_BOOST_TOMS748)
  laminate_missing("boost/math/tools/toms748_solve.hpp" libboost-dev)
endif()

# GoogleTest for the C++ tests (tests/), Google Benchmark for bench/.
# BUILD_TESTING is declared by include(CTest) later, ON by default.
if(NOT DEFINED BUILD_TESTING OR BUILD_TESTING)
  find_package(GTest CONFIG QUIET)
  if(NOT GTest_FOUND)
    laminate_missing("GoogleTest (GTestConfig.cmake)" libgtest-dev libgmock-dev)
  endif()
endif()
if(LAMINATE_BUILD_BENCH)
  find_package(benchmark CONFIG QUIET)
  if(NOT benchmark_FOUND)
    laminate_missing("Google Benchmark (benchmarkConfig.cmake)" libbenchmark-dev)
  endif()
endif()
