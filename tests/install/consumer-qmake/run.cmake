# Installs the built library into a scratch prefix, checks its pkg-config
# file, builds the qmake consumer through it and runs the consumer.
# Arguments: BUILD_DIR, SOURCE_DIR, WORK_DIR, QMAKE, LIBDIR, VERSION, EXTRA_FLAGS.
include("${CMAKE_CURRENT_LIST_DIR}/../install-prefix.cmake")
set(ENV{PKG_CONFIG_PATH} "${WORK_DIR}/prefix/${LIBDIR}/pkgconfig")

execute_process(COMMAND pkg-config --modversion model_KelAdmin
                RESULT_VARIABLE rc OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
if(rc OR NOT version STREQUAL VERSION)
  message(FATAL_ERROR "pkg-config --modversion: '${version}' (${rc}), expected '${VERSION}'")
endif()
execute_process(COMMAND pkg-config --libs --cflags model_KelAdmin
                RESULT_VARIABLE rc OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
if(rc OR NOT flags MATCHES "(^| )-lmodel_KelAdmin( |$)" OR NOT flags MATCHES "-lQt5Widgets"
   OR NOT flags MATCHES "/include/model_KelAdmin( |$)" OR flags MATCHES "readstat")
  message(FATAL_ERROR "pkg-config --libs --cflags: '${flags}' (${rc}); expected -lmodel_KelAdmin, "
                      "Qt 5 Widgets, the include folder and no ReadStat")
endif()

file(MAKE_DIRECTORY "${WORK_DIR}/build")
execute_process(COMMAND "${QMAKE}" "${SOURCE_DIR}/consumer.pro" "QMAKE_LFLAGS+=${EXTRA_FLAGS}"
                WORKING_DIRECTORY "${WORK_DIR}/build" RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "qmake failed: ${rc}")
endif()
execute_process(COMMAND make WORKING_DIRECTORY "${WORK_DIR}/build" RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "building the qmake consumer failed: ${rc}")
endif()

set(ENV{LD_LIBRARY_PATH} "${WORK_DIR}/prefix/${LIBDIR}")
execute_process(COMMAND "${WORK_DIR}/build/kx_qmake_consumer" RESULT_VARIABLE rc OUTPUT_VARIABLE out)
if(rc OR NOT out MATCHES "model_KelAdmin ${VERSION} ${VERSION}\n"
   OR NOT out MATCHES "System Error. Format not registered")
  message(FATAL_ERROR "qmake consumer run failed (${rc}): ${out}")
endif()
