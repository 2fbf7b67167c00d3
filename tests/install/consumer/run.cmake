# Installs the built library into a scratch prefix, builds the consumer
# against it and runs it (the library's widgets module must be found there); then runs the installed inspector's --version with
# an empty LD_LIBRARY_PATH, so only its run path can find the library.
# Arguments: BUILD_DIR, SOURCE_DIR, WORK_DIR, EXTRA_FLAGS, INSPECTOR (1 when
# the tools are built), VERSION (the project's version).
include("${CMAKE_CURRENT_LIST_DIR}/../install-prefix.cmake")
kx_build_against_prefix("the consumer" "${SOURCE_DIR}" "${WORK_DIR}/build")
execute_process(COMMAND "${CMAKE_COMMAND}" -E env QT_QPA_PLATFORM=offscreen "${WORK_DIR}/build/kx_consumer"
                RESULT_VARIABLE rc OUTPUT_VARIABLE out)
if(rc OR NOT out MATCHES "System Error. Format not registered" OR NOT out MATCHES "tooltip: /d1/d3/f.dat\n")
  message(FATAL_ERROR "consumer run failed (${rc}): ${out}")
endif()

if(INSPECTOR)
  set(inspect "${WORK_DIR}/prefix/bin/keladmin-inspect")
  # Starting at all: a missing library would end it with status 127.
  execute_process(COMMAND "${CMAKE_COMMAND}" -E env LD_LIBRARY_PATH= "${inspect}" --help
                  RESULT_VARIABLE rc OUTPUT_QUIET ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "installed keladmin-inspect --help: exit ${rc}, expected 0: ${err}")
  endif()
  execute_process(COMMAND "${CMAKE_COMMAND}" -E env LD_LIBRARY_PATH= "${inspect}" --version
                  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  string(REGEX REPLACE "\n$" "" line "${out}")
  string(FIND "${line}" "${VERSION}" at)
  if(NOT rc EQUAL 0 OR line MATCHES "\n" OR at EQUAL -1)
    message(FATAL_ERROR "installed keladmin-inspect --version: exit ${rc}, expected 0 and one line "
                        "with ${VERSION}; stdout: '${out}' stderr: '${err}'")
  endif()
endif()
