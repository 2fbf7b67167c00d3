# Copies the library alone into WORK_DIR/lib and runs PROGRAM with it there
# (LD_LIBRARY_PATH comes before the program's run path), so that the widgets
# module the library looks for beside itself is missing.
# Arguments: LIBRARY (the built library file), SONAME (its soname), PROGRAM, WORK_DIR, SAMPLE.
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}/lib")
execute_process(COMMAND "${CMAKE_COMMAND}" -E copy "${LIBRARY}" "${WORK_DIR}/lib/${SONAME}" RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "copying ${LIBRARY}: ${rc}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -E env "LD_LIBRARY_PATH=${WORK_DIR}/lib" QT_QPA_PLATFORM=offscreen
                "${PROGRAM}" "${WORK_DIR}/lib" "${SAMPLE}"
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${PROGRAM}: exit ${rc}\n${out}${err}")
endif()
