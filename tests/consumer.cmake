# A consumer project finds and links the installed library; the installed
# inspector starts from the scratch prefix without LD_LIBRARY_PATH.
set(KX_CONSUMER_FLAGS "")
if(KX_SANITIZE)
  set(KX_CONSUMER_FLAGS "-fsanitize=address,undefined")
endif()
add_test(NAME install.consumer_links_installed_library
  COMMAND "${CMAKE_COMMAND}"
    "-DBUILD_DIR=${CMAKE_BINARY_DIR}"
    "-DSOURCE_DIR=${CMAKE_CURRENT_SOURCE_DIR}/consumer"
    "-DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/consumer-work"
    "-DEXTRA_FLAGS=${KX_CONSUMER_FLAGS}"
    "-DINSPECTOR=$<TARGET_EXISTS:keladmin-inspect>"
    "-DVERSION=${PROJECT_VERSION}"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/consumer/run.cmake")
set_tests_properties(install.consumer_links_installed_library PROPERTIES TIMEOUT 300)
