# The inspector's peak memory on the inputs of scripts/memory-inputs.py (10 MB
# dictionaries, the hostile small files) stays within 20 times each input's
# size plus 50 MB (check_memory.py). Not in the sanitizer build, whose shadow
# memory and quarantine are no measure of the library's own.
if(TARGET keladmin-inspect AND NOT KX_SANITIZE)
  find_program(KX_PYTHON3 NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
  find_program(KX_PYTHON3 NAMES python3)
  if(KX_PYTHON3)
    add_test(NAME inspector.memory_within_bounds
      COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_memory.py"
              "$<TARGET_FILE:keladmin-inspect>" "${PROJECT_SOURCE_DIR}/scripts"
              "${CMAKE_CURRENT_BINARY_DIR}/memory-inputs")
    set_tests_properties(inspector.memory_within_bounds PROPERTIES
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 300)
  endif()
endif()
