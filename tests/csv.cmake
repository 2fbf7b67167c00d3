# The inspector's --csv output read back: check_csv.py (standard library
# only) reads it with Python's csv module and compares every row with the
# --json output of the same file, for each sample, the lookup sample and two
# dictionaries with hostile labels; the spreadsheet tests import it with
# Gnumeric's ssconvert and count the rows (skipped without ssconvert).
if(TARGET keladmin-inspect)
  find_program(KX_PYTHON3 NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
  find_program(KX_PYTHON3 NAMES python3)
  if(NOT KX_PYTHON3)
    message(STATUS "python3 not found: the CSV tests are left out")
  else()
    set(kx_csv_cases
      census_dcf "--sample|${PROJECT_SOURCE_DIR}/samples/census.dcf"
      census_json "--sample|${PROJECT_SOURCE_DIR}/samples/census.json"
      census_sav "--sample|${PROJECT_SOURCE_DIR}/samples/census.sav"
      census_dta "--sample|${PROJECT_SOURCE_DIR}/samples/census.dta"
      areas_txt "--lookup|${PROJECT_SOURCE_DIR}/samples/areas.txt"
      hostile_json "--hostile|json"
      hostile_dcf "--hostile|dcf")
    list(LENGTH kx_csv_cases kx_csv_length)
    math(EXPR kx_csv_last "${kx_csv_length} - 1")
    foreach(i RANGE 0 ${kx_csv_last} 2)
      math(EXPR j "${i} + 1")
      list(GET kx_csv_cases ${i} id)
      list(GET kx_csv_cases ${j} case)
      string(REPLACE "|" ";" case "${case}")
      foreach(mode roundtrip spreadsheet)
        add_test(NAME csv.${mode}.${id}
          COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_csv.py" ${mode}
                  "$<TARGET_FILE:keladmin-inspect>" "${CMAKE_CURRENT_BINARY_DIR}/csv-checks" ${case})
        set_tests_properties(csv.${mode}.${id} PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
      endforeach()
    endforeach()
  endif()
endif()
