# The inspector's man page (tools/keladmin-inspect.1), checked by
# check_man_page.py: groff -man -ww -z gives no warning; every option of
# --help is described in it and no other, with the same version and exit
# statuses; man -l renders it (skipped without groff or man).
if(TARGET keladmin-inspect)
  find_program(KX_PYTHON3 NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
  find_program(KX_PYTHON3 NAMES python3)
  if(NOT KX_PYTHON3)
    message(STATUS "python3 not found: the man page tests are left out")
  else()
    set(kx_man_page "${PROJECT_SOURCE_DIR}/tools/keladmin-inspect.1")
    set(kx_man_check "${CMAKE_CURRENT_SOURCE_DIR}/check_man_page.py")
    add_test(NAME man.lint COMMAND "${KX_PYTHON3}" "${kx_man_check}" lint "${kx_man_page}")
    add_test(NAME man.options
      COMMAND "${KX_PYTHON3}" "${kx_man_check}" options "$<TARGET_FILE:keladmin-inspect>" "${kx_man_page}")
    add_test(NAME man.render COMMAND "${KX_PYTHON3}" "${kx_man_check}" render "${kx_man_page}")
    set_tests_properties(man.lint man.options man.render PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
  endif()
endif()
