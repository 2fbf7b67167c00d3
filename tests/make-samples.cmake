# The sample writer's fuzz seeds read back: keladmin-make-samples --seeds
# writes 4 SPSS and 10 Stata files, and the inspector reads each one with exit
# status 0 and finds its first variable (scripts/check_seeds.cmake).
if(TARGET keladmin-make-samples AND TARGET keladmin-inspect)
  add_test(NAME make_samples.seeds_read_back
    COMMAND "${CMAKE_COMMAND}"
            "-DWRITER=$<TARGET_FILE:keladmin-make-samples>"
            "-DINSPECT=$<TARGET_FILE:keladmin-inspect>"
            "-DOUT=${CMAKE_CURRENT_BINARY_DIR}/make-samples-seeds"
            -P "${CMAKE_CURRENT_SOURCE_DIR}/scripts/check_seeds.cmake")
  set_tests_properties(make_samples.seeds_read_back PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endif()
