cmake_minimum_required(VERSION 3.16)
# Installs the built library into a scratch prefix, builds the programs of
# examples/ against it (one CMake project), and runs each on files of
# samples/ (and on a broken lookup file written here) for lines it must print.
# Arguments: BUILD_DIR, EXAMPLES_DIR, SAMPLES_DIR, WORK_DIR, EXTRA_FLAGS.
include("${CMAKE_CURRENT_LIST_DIR}/../install-prefix.cmake")

kx_build_against_prefix("the examples" "${EXAMPLES_DIR}" "${WORK_DIR}/examples")

# run(EXAMPLE EXIT_STATUS ARGUMENTS... EXPECT line... [MATCH regex...]): each
# expected line must be a whole line of the output; each regex must match one.
function(run example status)
  cmake_parse_arguments(RUN "" "" "ARGS;EXPECT;MATCH" ${ARGN})
  execute_process(COMMAND "${WORK_DIR}/examples/${example}" ${RUN_ARGS}
                  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc STREQUAL status)
    message(FATAL_ERROR "${example} ${RUN_ARGS}: exit ${rc}, expected ${status}\n${out}\n${err}")
  endif()
  string(REPLACE ";" "\\;" out_escaped "${out}")
  string(REPLACE "\n" ";" lines "${out_escaped}")
  foreach(expected IN LISTS RUN_EXPECT)
    if(NOT expected IN_LIST lines)
      message(FATAL_ERROR "${example} ${RUN_ARGS}: no line '${expected}' in:\n${out}")
    endif()
  endforeach()
  foreach(regex IN LISTS RUN_MATCH)
    if(NOT out MATCHES "(^|\n)${regex}(\n|$)")
      message(FATAL_ERROR "${example} ${RUN_ARGS}: no line matching '${regex}' in:\n${out}")
    endif()
  endforeach()
endfunction()

# census.dcf: 30 items, one of them (ASSET) with 6 occurrences, so 35 fields;
# PROVINCE starts at 2 and is 2 long.
run(list-fields 0 ARGS "${SAMPLES_DIR}/census.dcf"
    EXPECT "CSPRO: 35 fields" "PROVINCE  INTEGER  start 2  size 2  Province")
# census.sav: 15 variables; age is a double of format F3.0 (no decimals:
# integer, width 3).
run(list-fields 0 ARGS "${SAMPLES_DIR}/census.sav"
    EXPECT "SPSS: 15 fields"
    MATCH "age  INTEGER  start [0-9]+  size 3  Age in completed years")

# areas.txt: 34 lines with distinct keys of four digits; Central is the name of
# three districts, Harbour and Riverside of two.
run(check-lookup 0 ARGS "${SAMPLES_DIR}/areas.txt" tab
    EXPECT "34 entries, 0 messages" "Central: 3" "Harbour: 2" "Riverside: 2")
file(WRITE "${WORK_DIR}/broken.txt" "01\tNorth\n02\tSouth\n02\tAgain\n003\tLong\n")
run(check-lookup 3 ARGS "${WORK_DIR}/broken.txt" tab
    EXPECT "3 entries, 2 messages" "  line 3_Key [02] already exists"
           "  line 4_Key [003] has a different key size [3] from the first record [2]")

# census.dcf: records HOUSING (type H: 8 items and ASSET's 6 occurrences),
# PERSON (type P, 12 items) and DEATH (type D, 4 items).
run(record-tree 0 ARGS "${SAMPLES_DIR}/census.dcf"
    EXPECT "CENSUS2023_DICT (2023 Population and Housing Census)"
           "  HOUSING (Housing record)  type H, 14 fields"
           "  PERSON (Person record)  type P, 12 fields"
           "  DEATH (Deaths in the last 12 months)  type D, 4 fields")

# languages.dcf in two languages: AGE is Start=9, Len=2 (columns 9-10) with the
# labels "Age in completed years|Âge en années révolues"; its value
# "Value=18:59 60 61:64;Adult|Adulte" keeps its codes and ranges, and
# "Value=98;Refused|Refus" is REFUSED.
run(codebook 0 ARGS "${SAMPLES_DIR}/languages.dcf"
    EXPECT "cspro: 7 variables, 2 language(s)"
           "AGE  columns 9-10  [0] Age in completed years  [1] Âge en années révolues"
           "    18:59 60 61:64 = Adult"
           "    98 = Refused (REFUSED)")

