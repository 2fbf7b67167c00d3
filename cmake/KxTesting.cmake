# How the test rooms register their tests: one function per kind of test, so
# that a room's CMakeLists.txt lists its files and nothing else.
include(GoogleTest)

# Debian's python3 first, then any on the PATH. Sets KX_PYTHON3 (empty when none).
find_program(KX_PYTHON3 NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(KX_PYTHON3 NAMES python3)

# kx_add_gtest(NAME SOURCES file... [LIBS target...])
# A GoogleTest program on the kit's main (an offscreen QApplication); each of
# its tests is a CTest test named NAME.Suite.Test.
function(kx_add_gtest name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE kx_warnings kx_test_support ${ARG_LIBS})
  gtest_discover_tests(${name}
    TEST_PREFIX "${name}."
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
    DISCOVERY_TIMEOUT 60)
endfunction()

# kx_add_check(NAME COMMAND arg... [TIMEOUT s] [SKIPPABLE] [LOCK resource] [ENVIRONMENT var=value...])
# A test that runs a command; SKIPPABLE: exit status 77 means "skipped"
# (a tool the check needs is missing, and it said which).
function(kx_add_check name)
  cmake_parse_arguments(ARG "SKIPPABLE" "TIMEOUT;LOCK" "COMMAND;ENVIRONMENT" ${ARGN})
  add_test(NAME ${name} COMMAND ${ARG_COMMAND})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT})
  if(ARG_SKIPPABLE)
    set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
  endif()
  if(ARG_LOCK)
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK ${ARG_LOCK})
  endif()
  if(ARG_ENVIRONMENT)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${ARG_ENVIRONMENT}")
  endif()
endfunction()

# kx_add_python_check(NAME SCRIPT file ARGS arg... [TIMEOUT s] [SKIPPABLE] [LOCK resource])
# A Python check script run with KX_PYTHON3; left out, with one line saying
# so, when the machine has no python3.
function(kx_add_python_check name)
  cmake_parse_arguments(ARG "SKIPPABLE" "SCRIPT;TIMEOUT;LOCK" "ARGS;ENVIRONMENT" ${ARGN})
  if(NOT KX_PYTHON3)
    message(STATUS "python3 not found: ${name} is left out")
    return()
  endif()
  set(extra "")
  if(ARG_SKIPPABLE)
    list(APPEND extra SKIPPABLE)
  endif()
  foreach(key TIMEOUT LOCK)
    if(ARG_${key})
      list(APPEND extra ${key} ${ARG_${key}})
    endif()
  endforeach()
  if(ARG_ENVIRONMENT)
    list(APPEND extra ENVIRONMENT ${ARG_ENVIRONMENT})
  endif()
  kx_add_check(${name} COMMAND "${KX_PYTHON3}" "${ARG_SCRIPT}" ${ARG_ARGS} ${extra})
endfunction()

# kx_add_install_check(NAME SCRIPT run.cmake [DEFINES -DVAR=value...] [TIMEOUT s])
# A CMake script run with the build folder (BUILD_DIR), the sanitizer flags a
# program built against the install must carry (EXTRA_FLAGS) and a work
# folder of its own (WORK_DIR).
function(kx_add_install_check name)
  cmake_parse_arguments(ARG "" "SCRIPT;TIMEOUT" "DEFINES" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  kx_add_check(${name}
    COMMAND "${CMAKE_COMMAND}"
      "-DBUILD_DIR=${CMAKE_BINARY_DIR}"
      "-DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/${name}-work"
      "-DEXTRA_FLAGS=${KX_SANITIZER_FLAGS}"
      ${ARG_DEFINES}
      -P "${ARG_SCRIPT}"
    TIMEOUT ${ARG_TIMEOUT})
endfunction()
