# What is installed beside the library and the CMake package: the pkg-config
# file, the licence, the changelog, the inspector's man page; and the Debian
# package that CPack makes of the whole install tree (scripts/make-deb.sh).

configure_file("${PROJECT_SOURCE_DIR}/cmake/model_KelAdmin.pc.in"
  "${PROJECT_BINARY_DIR}/model_KelAdmin.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/model_KelAdmin.pc" DESTINATION "${KX_PC_DIR}")

install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}")

# The man page is installed as soon as it is in the tree.
set(KX_MAN_PAGE "${PROJECT_SOURCE_DIR}/tools/keladmin-inspect/keladmin-inspect.1")
if(KX_BUILD_TOOLS AND EXISTS "${KX_MAN_PAGE}")
  install(FILES "${KX_MAN_PAGE}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endif()

# Debian package (cpack -G DEB): library, headers, CMake and pkg-config files,
# the inspector and its documentation in one package.
set(CPACK_PACKAGE_NAME "libmodel-keladmin")
set(CPACK_PACKAGE_VENDOR "The libmodel_KelAdmin authors")
set(CPACK_PACKAGE_CONTACT "The libmodel_KelAdmin authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "reads survey and census data descriptions (CSPro, SPSS, Stata)")
set(CPACK_PACKAGE_DESCRIPTION
  "libmodel_KelAdmin reads CSPro dictionaries (text and CSPro 8 JSON), SPSS system
files and Stata data files into one common form of generic fields and record
types, imports code/label lookup files with checks, and comes with the
keladmin-inspect command-line inspector.")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "libs")
set(CPACK_DEBIAN_PACKAGE_PRIORITY "optional")
# dpkg-shlibdeps finds the run-time dependencies (libqt5core5a, libqt5gui5,
# libqt5widgets5, libreadstat1, libstdc++6, libc6) from the binaries; the
# package's own library is looked up in its staging folder.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
# Building against the installed headers needs Qt's and pkg-config's files.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qtbase5-dev, pkg-config")
include(CPack)
