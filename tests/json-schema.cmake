# The inspector's --json output validated against its JSON Schema
# (docs/keladmin-inspect.schema.json) by check_json_schema.py with Python's
# jsonschema (Debian python3-jsonschema; the tests skip themselves without it):
# every sample as a dictionary and the lookup sample, with and without --check
# and --no-notes; wrong documents that must be rejected; the schema itself.
if(TARGET keladmin-inspect)
  find_program(KX_PYTHON3 NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
  find_program(KX_PYTHON3 NAMES python3)
  if(NOT KX_PYTHON3)
    message(STATUS "python3 not found: the JSON Schema tests are left out")
  else()
    set(kx_schema "${PROJECT_SOURCE_DIR}/docs/keladmin-inspect.schema.json")
    set(kx_samples "${PROJECT_SOURCE_DIR}/samples")
    set(kx_areas "--lookup|${kx_samples}/areas.txt|--separator|tab")
    set(kx_bad "--lookup|@bad-lookup|--separator|tab|--check")
    set(kx_schema_cases
      census_dcf "${kx_samples}/census.dcf"
      census_dcf_no_notes "--no-notes|${kx_samples}/census.dcf"
      census_dcf_yes_to_all "--decimal|yes-to-all|${kx_samples}/census.dcf"
      census_json "${kx_samples}/census.json"
      census_json_no_notes "--no-notes|${kx_samples}/census.json"
      census_sav "${kx_samples}/census.sav"
      census_sav_no_notes "--no-notes|${kx_samples}/census.sav"
      census_dta "${kx_samples}/census.dta"
      census_dta_no_notes "--no-notes|${kx_samples}/census.dta"
      areas_txt "${kx_areas}"
      areas_txt_check "${kx_areas}|--check"
      areas_txt_check_no_notes "${kx_areas}|--check|--no-notes"
      lookup_messages "${kx_bad}"
      lookup_messages_capped "${kx_bad}|--max-messages|1")
    list(LENGTH kx_schema_cases kx_schema_length)
    math(EXPR kx_schema_last "${kx_schema_length} - 1")
    foreach(i RANGE 0 ${kx_schema_last} 2)
      math(EXPR j "${i} + 1")
      list(GET kx_schema_cases ${i} id)
      list(GET kx_schema_cases ${j} args)
      string(REPLACE "|" ";" args "${args}")
      add_test(NAME json.schema.valid.${id}
        COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_json_schema.py" valid "${kx_schema}"
                "$<TARGET_FILE:keladmin-inspect>" "${CMAKE_CURRENT_BINARY_DIR}/json-schema/${id}" ${args})
    endforeach()
    add_test(NAME json.schema.rejects.dictionary
      COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_json_schema.py" rejects "${kx_schema}"
              "$<TARGET_FILE:keladmin-inspect>" "${CMAKE_CURRENT_BINARY_DIR}/json-schema/rejects-dictionary"
              "${kx_samples}/census.dcf")
    foreach(sample census.sav census.dta)
      string(REPLACE "." "_" id "${sample}")
      add_test(NAME json.schema.rejects.${id}
        COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_json_schema.py" rejects "${kx_schema}"
                "$<TARGET_FILE:keladmin-inspect>" "${CMAKE_CURRENT_BINARY_DIR}/json-schema/rejects-${id}"
                "${kx_samples}/${sample}")
    endforeach()
    string(REPLACE "|" ";" kx_bad_args "${kx_bad}")
    add_test(NAME json.schema.rejects.lookup
      COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_json_schema.py" rejects "${kx_schema}"
              "$<TARGET_FILE:keladmin-inspect>" "${CMAKE_CURRENT_BINARY_DIR}/json-schema/rejects-lookup"
              ${kx_bad_args})
    add_test(NAME json.schema.file
      COMMAND "${KX_PYTHON3}" "${CMAKE_CURRENT_SOURCE_DIR}/check_json_schema.py" schema "${kx_schema}")
    get_property(kx_schema_tests DIRECTORY PROPERTY TESTS)
    list(FILTER kx_schema_tests INCLUDE REGEX "^json\\.schema\\.")
    set_tests_properties(${kx_schema_tests} PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
  endif()
endif()
