# Included by the install checks' scripts: installs the build (BUILD_DIR)
# into WORK_DIR/prefix, WORK_DIR emptied first, and gives them
# kx_build_against_prefix() for the projects they build against it.
file(REMOVE_RECURSE "${WORK_DIR}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/prefix"
                RESULT_VARIABLE rc OUTPUT_QUIET)
if(rc)
  message(FATAL_ERROR "install failed: ${rc}")
endif()

# kx_build_against_prefix(WHAT SOURCE BINARY): configures and builds the CMake
# project at SOURCE into BINARY against the prefix, with EXTRA_FLAGS for the link.
function(kx_build_against_prefix what source binary)
  execute_process(COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${binary}"
                  "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix" "-DCMAKE_EXE_LINKER_FLAGS=${EXTRA_FLAGS}"
                  RESULT_VARIABLE rc OUTPUT_QUIET)
  if(rc)
    message(FATAL_ERROR "configuring ${what} failed: ${rc}")
  endif()
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${binary}" RESULT_VARIABLE rc OUTPUT_QUIET)
  if(rc)
    message(FATAL_ERROR "building ${what} failed: ${rc}")
  endif()
endfunction()
