# The SPSS and Stata tests also read the bundled samples.
foreach(t tst_SPSSDataImport tst_STATADataImport)
  if(TARGET ${t})
    target_compile_definitions(${t} PRIVATE KX_SAMPLES_DIR="${PROJECT_SOURCE_DIR}/samples")
  endif()
endforeach()
