# The programs of examples/ build against the installed library and print
# what the samples hold.
set(KX_EXAMPLES_FLAGS "")
if(KX_SANITIZE)
  set(KX_EXAMPLES_FLAGS "-fsanitize=address,undefined")
endif()
add_test(NAME install.examples_build_and_run
  COMMAND "${CMAKE_COMMAND}"
    "-DBUILD_DIR=${CMAKE_BINARY_DIR}"
    "-DEXAMPLES_DIR=${PROJECT_SOURCE_DIR}/examples"
    "-DSAMPLES_DIR=${PROJECT_SOURCE_DIR}/samples"
    "-DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/examples-work"
    "-DEXTRA_FLAGS=${KX_EXAMPLES_FLAGS}"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/examples/run.cmake")
set_tests_properties(install.examples_build_and_run PROPERTIES TIMEOUT 600)
