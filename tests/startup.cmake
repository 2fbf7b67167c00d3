# A program that reads samples through the library loads no Qt GUI library:
# the library links Qt Core only and keeps its dialogs in a module of its own.
add_executable(kx_no_gui_libraries startup/no_gui_libraries.cpp)
target_compile_options(kx_no_gui_libraries PRIVATE -Wall -Wextra)
target_link_libraries(kx_no_gui_libraries PRIVATE model_KelAdmin::model_KelAdmin)
# The library's interface names Qt Widgets for its headers; linked as needed,
# this program depends on what it really calls.
target_link_options(kx_no_gui_libraries PRIVATE "LINKER:--as-needed")
add_test(NAME startup.reading_loads_no_gui_library
  COMMAND kx_no_gui_libraries "${PROJECT_SOURCE_DIR}/samples/census.sav" "${PROJECT_SOURCE_DIR}/samples/census.dcf")
set_tests_properties(startup.reading_loads_no_gui_library PROPERTIES ENVIRONMENT "QT_LOGGING_RULES=default.debug=false")

# Without the widgets module the library goes on without dialogs, font
# measures or labels, and says so once.
add_executable(kx_without_widgets_module startup/without_widgets_module.cpp)
target_compile_options(kx_without_widgets_module PRIVATE -Wall -Wextra)
target_link_libraries(kx_without_widgets_module PRIVATE model_KelAdmin::model_KelAdmin ${CMAKE_DL_LIBS})
add_test(NAME startup.without_widgets_module
  COMMAND "${CMAKE_COMMAND}"
    "-DLIBRARY=$<TARGET_FILE:model_KelAdmin>"
    "-DSONAME=$<TARGET_SONAME_FILE_NAME:model_KelAdmin>"
    "-DPROGRAM=$<TARGET_FILE:kx_without_widgets_module>"
    "-DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/without-widgets"
    "-DSAMPLE=${PROJECT_SOURCE_DIR}/samples/census.dcf"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/startup/run-without-widgets.cmake")
