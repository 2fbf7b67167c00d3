# A qmake project finds the installed library through its pkg-config file.
get_target_property(KX_QMAKE Qt5::qmake IMPORTED_LOCATION)
find_program(KX_PKG_CONFIG pkg-config)
if(KX_QMAKE AND EXISTS "${KX_QMAKE}" AND KX_PKG_CONFIG)
  set(KX_QMAKE_FLAGS "")
  if(KX_SANITIZE)
    set(KX_QMAKE_FLAGS "-fsanitize=address,undefined")
  endif()
  add_test(NAME install.qmake_consumer_uses_pkg_config
    COMMAND "${CMAKE_COMMAND}"
      "-DBUILD_DIR=${CMAKE_BINARY_DIR}"
      "-DSOURCE_DIR=${CMAKE_CURRENT_SOURCE_DIR}/consumer-qmake"
      "-DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/consumer-qmake-work"
      "-DQMAKE=${KX_QMAKE}"
      "-DLIBDIR=${CMAKE_INSTALL_LIBDIR}"
      "-DVERSION=${PROJECT_VERSION}"
      "-DEXTRA_FLAGS=${KX_QMAKE_FLAGS}"
      -P "${CMAKE_CURRENT_SOURCE_DIR}/consumer-qmake/run.cmake")
  set_tests_properties(install.qmake_consumer_uses_pkg_config PROPERTIES TIMEOUT 300)
endif()
