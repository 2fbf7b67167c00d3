# The Debian package installs, runs and goes away again (root only; skipped
# otherwise). Not in sanitizer builds: the package is a Release build of its own.
if(NOT KX_SANITIZE)
  add_test(NAME package.deb_installs_and_runs
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/package/deb-install.sh"
      "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_BINARY_DIR}/deb-work" "${PROJECT_VERSION}")
  set_tests_properties(package.deb_installs_and_runs PROPERTIES
    TIMEOUT 900 SKIP_RETURN_CODE 77)
endif()
