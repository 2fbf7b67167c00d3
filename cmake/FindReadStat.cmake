# Finds the ReadStat C library (Debian's libreadstat-dev ships no pkg-config
# file and no CMake package) and makes the imported target ReadStat::ReadStat.
find_path(ReadStat_INCLUDE_DIR NAMES readstat.h)
find_library(ReadStat_LIBRARY NAMES readstat)

# readstat.h carries no version; the versioned file name of the library does
# (libreadstat.so.1.1.8).
if(ReadStat_LIBRARY)
  get_filename_component(_kx_readstat_real "${ReadStat_LIBRARY}" REALPATH)
  if(_kx_readstat_real MATCHES "\\.so\\.([0-9]+\\.[0-9]+\\.[0-9]+)$")
    set(ReadStat_VERSION "${CMAKE_MATCH_1}")
  else()
    set(ReadStat_VERSION "unknown")
  endif()
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(ReadStat REQUIRED_VARS ReadStat_LIBRARY ReadStat_INCLUDE_DIR
  VERSION_VAR ReadStat_VERSION)

if(ReadStat_FOUND AND NOT TARGET ReadStat::ReadStat)
  add_library(ReadStat::ReadStat UNKNOWN IMPORTED)
  set_target_properties(ReadStat::ReadStat PROPERTIES
    IMPORTED_LOCATION "${ReadStat_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${ReadStat_INCLUDE_DIR}")
endif()
mark_as_advanced(ReadStat_INCLUDE_DIR ReadStat_LIBRARY)
