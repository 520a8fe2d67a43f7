# cmake -DBUILD_DIR=<build> -DSTAGING=<dir> -DPREFIX=<dir> -P install_moved.cmake
#
# Installs the build into STAGING, moves the tree to PREFIX and checks that
# the moved tree holds one copy of the library and no file that names the
# folder it was installed in.
file(REMOVE_RECURSE ${STAGING} ${PREFIX})
execute_process(
  COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${STAGING}
  OUTPUT_QUIET
  RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "cmake --install failed (${rc})")
endif()
file(RENAME ${STAGING} ${PREFIX})

# One copy of the library; other names for it are links.
file(GLOB_RECURSE libraries LIST_DIRECTORIES false ${PREFIX}/liblaminate*)
set(copies)
foreach(library ${libraries})
  if(NOT IS_SYMLINK ${library})
    list(APPEND copies ${library})
  endif()
endforeach()
list(LENGTH copies count)
if(NOT count EQUAL 1)
  message(FATAL_ERROR "expected one installed library, found: ${copies}")
endif()

file(GLOB_RECURSE files LIST_DIRECTORIES false ${PREFIX}/*)
foreach(f ${files})
  file(STRINGS ${f} hits REGEX "${STAGING}")
  if(hits)
    message(FATAL_ERROR "${f} names the install folder ${STAGING}: ${hits}")
  endif()
endforeach()
list(LENGTH files count)
message(STATUS "${count} files installed and moved to ${PREFIX}")
