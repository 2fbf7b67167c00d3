# The importer tests also read the bundled samples.
foreach(t tst_SPSSDataImport tst_STATADataImport tst_CSProDataImport)
  if(TARGET ${t})
    target_compile_definitions(${t} PRIVATE KX_SAMPLES_DIR="${PROJECT_SOURCE_DIR}/samples")
  endif()
endforeach()
