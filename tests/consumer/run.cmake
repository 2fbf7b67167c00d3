# Installs the built library into a scratch prefix, builds the consumer
# against it and runs it. Arguments: BUILD_DIR, SOURCE_DIR, WORK_DIR, EXTRA_FLAGS.
file(REMOVE_RECURSE "${WORK_DIR}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/prefix"
                RESULT_VARIABLE rc OUTPUT_QUIET)
if(rc)
  message(FATAL_ERROR "install failed: ${rc}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${WORK_DIR}/build"
                "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix" "-DCMAKE_EXE_LINKER_FLAGS=${EXTRA_FLAGS}"
                RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "configuring the consumer failed: ${rc}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK_DIR}/build" RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "building the consumer failed: ${rc}")
endif()
execute_process(COMMAND "${WORK_DIR}/build/kx_consumer" RESULT_VARIABLE rc OUTPUT_VARIABLE out)
if(rc OR NOT out MATCHES "System Error. Format not registered")
  message(FATAL_ERROR "consumer run failed (${rc}): ${out}")
endif()
