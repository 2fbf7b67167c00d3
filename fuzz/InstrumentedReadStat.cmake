# Builds ReadStat from the sources in KX_FUZZ_READSTAT_SOURCE with clang,
# AddressSanitizer, UndefinedBehaviorSanitizer and libFuzzer's coverage
# instrumentation into a static library, and points ReadStat::ReadStat at it,
# so the library of this build folder, the fuzz targets and the seed writer
# all run the instrumented ReadStat. Included by fuzz/CMakeLists.txt.
if(NOT KX_SANITIZE)
  message(FATAL_ERROR "KX_FUZZ_READSTAT_SOURCE needs -DKX_SANITIZE=ON: the instrumented ReadStat needs the sanitizer runtimes")
endif()

get_filename_component(_kx_rs_dir "${KX_FUZZ_READSTAT_SOURCE}" ABSOLUTE)
foreach(_kx_rs_file configure.ac Makefile.am src/readstat.h)
  if(NOT EXISTS "${_kx_rs_dir}/${_kx_rs_file}")
    message(FATAL_ERROR "KX_FUZZ_READSTAT_SOURCE: ${_kx_rs_dir} holds no ${_kx_rs_file}; pass the top folder of ReadStat's sources")
  endif()
endforeach()

# The sources must be the release the system library was built from: the
# library is compiled against the system's readstat.h either way.
file(STRINGS "${_kx_rs_dir}/configure.ac" _kx_rs_init REGEX "^AC_INIT\\(\\[ReadStat\\]")
if(NOT _kx_rs_init MATCHES "^AC_INIT\\(\\[ReadStat\\],\\[([0-9.]+)\\]")
  message(FATAL_ERROR "KX_FUZZ_READSTAT_SOURCE: no ReadStat version in ${_kx_rs_dir}/configure.ac")
endif()
set(_kx_rs_version "${CMAKE_MATCH_1}")
if(NOT _kx_rs_version VERSION_EQUAL ReadStat_VERSION)
  message(FATAL_ERROR "KX_FUZZ_READSTAT_SOURCE holds ReadStat ${_kx_rs_version}, the system library is ${ReadStat_VERSION}")
endif()
file(SHA256 "${_kx_rs_dir}/src/readstat.h" _kx_rs_header)
file(SHA256 "${ReadStat_INCLUDE_DIR}/readstat.h" _kx_system_header)
if(NOT _kx_rs_header STREQUAL _kx_system_header)
  message(FATAL_ERROR "KX_FUZZ_READSTAT_SOURCE: src/readstat.h differs from ${ReadStat_INCLUDE_DIR}/readstat.h")
endif()

# The sources of libreadstat_la_SOURCES in Makefile.am, the zlib block (ZSAV)
# included: every "libreadstat_la_SOURCES =" or "+=" assignment, its
# continuation lines joined first.
file(READ "${_kx_rs_dir}/Makefile.am" _kx_rs_makefile)
string(REGEX REPLACE "\\\\[ \t]*\n" " " _kx_rs_makefile "${_kx_rs_makefile}")
string(REGEX MATCHALL "\nlibreadstat_la_SOURCES[ \t]*\\+?=[^\n]*" _kx_rs_lists "${_kx_rs_makefile}")
set(_kx_rs_sources)
foreach(_kx_rs_list IN LISTS _kx_rs_lists)
  string(REGEX REPLACE "^\nlibreadstat_la_SOURCES[ \t]*\\+?=" "" _kx_rs_list "${_kx_rs_list}")
  separate_arguments(_kx_rs_list UNIX_COMMAND "${_kx_rs_list}")
  foreach(_kx_rs_file IN LISTS _kx_rs_list)
    list(APPEND _kx_rs_sources "${_kx_rs_dir}/${_kx_rs_file}")
  endforeach()
endforeach()
list(LENGTH _kx_rs_sources _kx_rs_count)
if(_kx_rs_count EQUAL 0)
  message(FATAL_ERROR "KX_FUZZ_READSTAT_SOURCE: no libreadstat_la_SOURCES in ${_kx_rs_dir}/Makefile.am")
endif()
message(STATUS "Fuzzing against ReadStat ${_kx_rs_version} built from ${_kx_rs_dir} (${_kx_rs_count} sources)")

enable_language(C)
find_package(ZLIB REQUIRED)

add_library(kx_readstat_instrumented STATIC ${_kx_rs_sources})
set_target_properties(kx_readstat_instrumented PROPERTIES
  C_STANDARD 99
  C_EXTENSIONS OFF
  # Linked into the shared library of this build folder.
  POSITION_INDEPENDENT_CODE ON
  ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/readstat")
# HAVE_ZLIB as ReadStat's configure sets it when zlib is there; iconv is glibc's.
target_compile_definitions(kx_readstat_instrumented PRIVATE HAVE_ZLIB=1)
target_include_directories(kx_readstat_instrumented PRIVATE "${_kx_rs_dir}/src")
# The null-argument check (nonnull-attribute) is recoverable in ReadStat's
# objects, so that fuzz/ubsan-readstat.supp can silence its three known places
# (a suppression does not stop a check built without recovery from aborting);
# with halt_on_error=1, as run-fuzzers.sh sets it, any other report still halts.
target_compile_options(kx_readstat_instrumented PRIVATE -g -w
  -fsanitize=address,undefined,fuzzer-no-link -fno-omit-frame-pointer
  -fsanitize-recover=nonnull-attribute)
target_link_libraries(kx_readstat_instrumented PUBLIC ZLIB::ZLIB m)

# Everything that links ReadStat::ReadStat in this build folder (the library,
# the seed writer) now links the archive; the target in the link interface
# orders the build.
set_target_properties(ReadStat::ReadStat PROPERTIES
  IMPORTED_LOCATION "${CMAKE_CURRENT_BINARY_DIR}/readstat/${CMAKE_STATIC_LIBRARY_PREFIX}kx_readstat_instrumented${CMAKE_STATIC_LIBRARY_SUFFIX}"
  INTERFACE_LINK_LIBRARIES kx_readstat_instrumented)
