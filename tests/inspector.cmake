# tst_Inspector runs the built inspector on the samples and on bad input; it
# finds the program through a compile definition. Without the tools it skips itself.
if(TARGET tst_Inspector AND TARGET keladmin-inspect)
  target_compile_definitions(tst_Inspector PRIVATE
    KX_INSPECT_PROGRAM="$<TARGET_FILE:keladmin-inspect>")
  add_dependencies(tst_Inspector keladmin-inspect)
endif()

# tst_InspectReport calls the inspector's writers on reports filled by hand;
# without the tools it skips itself.
if(TARGET tst_InspectReport AND TARGET kx_inspect)
  target_link_libraries(tst_InspectReport PRIVATE kx_inspect)
  target_compile_definitions(tst_InspectReport PRIVATE KX_HAVE_INSPECT)
endif()
