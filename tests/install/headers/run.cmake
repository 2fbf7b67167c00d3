# Installs the build into a scratch prefix and compiles every installed
# header with -Wall -Wextra -Wpedantic -Wshadow -Werror and plain -I options,
# as a qmake or pkg-config consumer includes them.
# Arguments: BUILD_DIR, WORK_DIR, EXTRA_FLAGS, COMPILER, SOURCE, QT_INCLUDES (folders joined by "|").
include("${CMAKE_CURRENT_LIST_DIR}/../install-prefix.cmake")
string(REPLACE "|" ";" qt_includes "${QT_INCLUDES}")
set(includes "")
foreach(dir "${WORK_DIR}/prefix/include/model_KelAdmin" "${WORK_DIR}/prefix/include/KelCodebook" ${qt_includes})
  list(APPEND includes "-I${dir}")
endforeach()
execute_process(COMMAND "${COMPILER}" -std=c++17 -fPIC -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Werror
                        ${includes} "${SOURCE}"
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(rc)
  message(FATAL_ERROR "the installed headers do not compile cleanly:\n${out}${err}")
endif()
