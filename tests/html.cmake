# The inspector's HTML page for each sample, checked by two Python scripts
# (standard library only): check_html_page.py reads the page and checks every
# field's box against the --json output; check_html_screenshot.py renders it
# in headless Chromium and checks the screenshot (skipped without
# /usr/bin/chromium). Debian's python3 is preferred; without any python3 the
# tests are left out.
if(TARGET keladmin-inspect)
  find_program(KX_PYTHON3 NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
  find_program(KX_PYTHON3 NAMES python3)
  if(NOT KX_PYTHON3)
    message(STATUS "python3 not found: the HTML page tests are left out")
  else()
    foreach(sample census.dcf census.json census.sav census.dta)
      string(REPLACE "." "_" id "${sample}")
      add_test(NAME html.page.${id}
        COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_html_page.py"
                "$<TARGET_FILE:keladmin-inspect>" "${PROJECT_SOURCE_DIR}/samples/${sample}"
                "${CMAKE_CURRENT_BINARY_DIR}/html-pages")
      set_tests_properties(html.page.${id} PROPERTIES TIMEOUT 120)
      add_test(NAME html.browser.${id}
        COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_html_screenshot.py"
                "$<TARGET_FILE:keladmin-inspect>" "${PROJECT_SOURCE_DIR}/samples/${sample}"
                "${CMAKE_CURRENT_BINARY_DIR}/html-screenshots")
      # Chromium is heavy: one browser at a time.
      set_tests_properties(html.browser.${id} PROPERTIES TIMEOUT 180 SKIP_RETURN_CODE 77
        RESOURCE_LOCK chromium)
    endforeach()
  endif()
endif()
