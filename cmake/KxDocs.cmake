# The "docs" target: the API reference of the public headers, with the
# library guide (docs/mainpage.md) as its main page, in BUILD/docs/html.
# Any Doxygen warning (an undocumented public class, function or member, a
# broken reference) fails the target unless KX_DOCS_WARN_AS_ERROR is OFF.
find_package(Doxygen QUIET)
option(KX_DOCS_WARN_AS_ERROR "Fail the docs target on any Doxygen warning" ON)
if(NOT DOXYGEN_FOUND)
  # The target exists all the same and says what it needs.
  add_custom_target(docs
    COMMAND "${CMAKE_COMMAND}" -E echo "docs: Doxygen is missing (Debian: apt-get install doxygen), no API reference written"
    COMMAND "${CMAKE_COMMAND}" -E false
    VERBATIM)
  return()
endif()

set(KX_DOCS_OUTPUT "${PROJECT_BINARY_DIR}/docs")
# The public headers are the .h files a library target lists, but its private *_p.h.
function(kx_public_headers target folder out)
  get_target_property(sources ${target} SOURCES)
  set(headers "")
  foreach(source IN LISTS sources)
    if(source MATCHES "\\.h$" AND NOT source MATCHES "_p\\.h$")
      list(APPEND headers "${folder}/${source}")
    endif()
  endforeach()
  set(${out} ${headers} PARENT_SCOPE)
endfunction()
kx_public_headers(model_KelAdmin "${PROJECT_SOURCE_DIR}/model_KelAdmin" KX_DOCS_LIBRARY_HEADERS)
kx_public_headers(KelCodebook "${PROJECT_SOURCE_DIR}/codebook" KX_DOCS_CODEBOOK_HEADERS)
set(KX_DOCS_HEADERS ${KX_DOCS_LIBRARY_HEADERS} ${KX_DOCS_CODEBOOK_HEADERS})
set(KX_DOCS_PAGES "${PROJECT_SOURCE_DIR}/docs/mainpage.md" "${PROJECT_SOURCE_DIR}/docs/embedding.md"
  "${PROJECT_SOURCE_DIR}/docs/ddi.md")
set(KX_DOCS_SOURCES ${KX_DOCS_HEADERS} "${PROJECT_BINARY_DIR}/model_KelAdmin/model_KelAdmin_version.h"
  ${KX_DOCS_PAGES})
list(JOIN KX_DOCS_SOURCES " " KX_DOCS_INPUT)
if(KX_DOCS_WARN_AS_ERROR)
  set(KX_DOCS_WARN_AS_ERROR FAIL_ON_WARNINGS)
else()
  set(KX_DOCS_WARN_AS_ERROR NO)
endif()
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${KX_DOCS_OUTPUT}/Doxyfile" @ONLY)

# WARN_LOGFILE keeps the warnings out of the console; print them so that a
# failing run says why.
add_custom_target(docs
  COMMAND "${CMAKE_COMMAND}" -E remove -f "${KX_DOCS_OUTPUT}/warnings.log"
  COMMAND "${CMAKE_COMMAND}" -DDOXYGEN=${DOXYGEN_EXECUTABLE} "-DDOXYFILE=${KX_DOCS_OUTPUT}/Doxyfile"
          "-DLOG=${KX_DOCS_OUTPUT}/warnings.log" -P "${PROJECT_SOURCE_DIR}/cmake/KxRunDoxygen.cmake"
  DEPENDS ${KX_DOCS_SOURCES} "${KX_DOCS_OUTPUT}/Doxyfile"
  WORKING_DIRECTORY "${KX_DOCS_OUTPUT}"
  COMMENT "API reference: ${KX_DOCS_OUTPUT}/html/index.html"
  VERBATIM)
