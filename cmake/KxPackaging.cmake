# What is installed beside the libraries and their CMake packages: the
# pkg-config file, the licence, the changelog, the inspector's man page; and
# the Debian packages that CPack makes of the install tree.

configure_file("${PROJECT_SOURCE_DIR}/cmake/model_KelAdmin.pc.in"
  "${PROJECT_BINARY_DIR}/model_KelAdmin.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/model_KelAdmin.pc" DESTINATION "${KX_PC_DIR}" COMPONENT dev)

install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT dev)

# The Debian packages, split as Debian splits a library (cpack -G DEB,
# scripts/make-deb.sh), one per install component:
#   libmodel-keladmin1          runtime   the library (Qt Core, ReadStat)
#   libmodel-keladmin1-widgets  widgets   its widgets module (Qt Widgets), kept
#                                         apart so that the library depends on Qt
#                                         Core only; the library Recommends it,
#                                         as it shows dialogs and measures paths
#                                         only through it
#   libkelcodebook1             codebook  the codebook library
#   libmodel-keladmin-dev       dev       headers, .so links, CMake and
#                                         pkg-config files of both libraries
#   keladmin-tools              tools     the inspector, its man page and schemas
# Each carries /usr/share/doc/<package>/copyright (Debian's machine-readable
# format) and changelog.gz; the libraries' packages an ldconfig trigger.
set(KX_DEB_MAINTAINER "The libmodel_KelAdmin team <keladmin@example.org>")
set(KX_DEB_PACKAGES
  runtime libmodel-keladmin1
  widgets libmodel-keladmin1-widgets
  codebook libkelcodebook1
  dev libmodel-keladmin-dev
  tools keladmin-tools)

file(READ "${PROJECT_SOURCE_DIR}/LICENSE" kx_license)
string(REGEX REPLACE "^MIT License\n\n" "" kx_license "${kx_license}")
string(REGEX REPLACE "\n\n" "\n.\n" kx_license "${kx_license}")
string(REGEX REPLACE "\n$" "" kx_license "${kx_license}")
string(REGEX REPLACE "\n" "\n " KX_LICENSE_TEXT " ${kx_license}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/debian-copyright.in" "${PROJECT_BINARY_DIR}/debian/copyright" @ONLY)

string(TIMESTAMP kx_changelog_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
find_program(KX_GZIP gzip)
set(kx_packages ${KX_DEB_PACKAGES})
while(kx_packages)
  list(POP_FRONT kx_packages kx_component kx_package)
  set(kx_doc "${CMAKE_INSTALL_DATAROOTDIR}/doc/${kx_package}")
  install(FILES "${PROJECT_BINARY_DIR}/debian/copyright" DESTINATION "${kx_doc}" COMPONENT ${kx_component})
  # A native package (no Debian revision) names its changelog changelog.gz.
  file(WRITE "${PROJECT_BINARY_DIR}/debian/${kx_package}/changelog"
    "${kx_package} (${PROJECT_VERSION}) unstable; urgency=medium\n\n"
    "  * Release ${PROJECT_VERSION}; the changes are in the project's CHANGELOG.md.\n\n"
    " -- ${KX_DEB_MAINTAINER}  ${kx_changelog_date}\n")
  if(KX_GZIP)
    execute_process(COMMAND "${KX_GZIP}" -9nf "${PROJECT_BINARY_DIR}/debian/${kx_package}/changelog")
    install(FILES "${PROJECT_BINARY_DIR}/debian/${kx_package}/changelog.gz" DESTINATION "${kx_doc}"
      COMPONENT ${kx_component})
  endif()
  string(TOUPPER "${kx_component}" kx_upper)
  set(CPACK_DEBIAN_${kx_upper}_PACKAGE_NAME "${kx_package}")
  set(CPACK_DEBIAN_${kx_upper}_FILE_NAME DEB-DEFAULT)
endwhile()

# The man page goes with the inspector, compressed as man pages are.
set(KX_MAN_PAGE "${PROJECT_SOURCE_DIR}/tools/keladmin-inspect/keladmin-inspect.1")
if(KX_BUILD_TOOLS AND EXISTS "${KX_MAN_PAGE}")
  if(KX_GZIP)
    configure_file("${KX_MAN_PAGE}" "${PROJECT_BINARY_DIR}/man/keladmin-inspect.1" COPYONLY)
    execute_process(COMMAND "${KX_GZIP}" -9nf "${PROJECT_BINARY_DIR}/man/keladmin-inspect.1")
    install(FILES "${PROJECT_BINARY_DIR}/man/keladmin-inspect.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
      COMPONENT tools)
  else()
    install(FILES "${KX_MAN_PAGE}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools)
  endif()
endif()

# The libraries' packages run ldconfig through Debian's trigger.
file(WRITE "${PROJECT_BINARY_DIR}/debian/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/debian/triggers")
set(CPACK_DEBIAN_CODEBOOK_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/debian/triggers")

set(CPACK_PACKAGE_NAME "libmodel-keladmin")
set(CPACK_PACKAGE_VENDOR "The libmodel_KelAdmin authors")
set(CPACK_PACKAGE_CONTACT "${KX_DEB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${KX_DEB_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "reads survey and census data descriptions (CSPro, SPSS, Stata)")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime widgets codebook dev tools)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY "optional")
set(CPACK_DEBIAN_PACKAGE_SECTION "libs")
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION "libdevel")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION "science")
# dpkg-shlibdeps computes Depends from the binaries (libqt5core5a and
# libreadstat1 for the libraries, libqt5widgets5 for the widgets module, the
# two libraries for the inspector, through the shlibs files made here).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
# The inspector needs the two libraries, which sit in other packages' staging
# folders: dpkg-shlibdeps finds them in the build tree (their own packages are
# named in Depends below).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  "${PROJECT_BINARY_DIR}/model_KelAdmin" "${PROJECT_BINARY_DIR}/codebook")
set(kx_exact "(= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "libmodel-keladmin1-widgets ${kx_exact}")
set(CPACK_DEBIAN_WIDGETS_PACKAGE_DEPENDS "libmodel-keladmin1 ${kx_exact}")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
  "libmodel-keladmin1 ${kx_exact}, libkelcodebook1 ${kx_exact}, qtbase5-dev (>= 5.14)")
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "pkg-config")
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libmodel-keladmin1 ${kx_exact}, libkelcodebook1 ${kx_exact}")
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "libmodel-keladmin1-widgets ${kx_exact}")
# CPack takes the synopsis of every package from CPACK_PACKAGE_DESCRIPTION_SUMMARY;
# each description below is the extended text, which first says what its
# package holds.
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "The shared library libmodel_KelAdmin: it reads CSPro dictionaries
(text and CSPro 8 JSON), SPSS system files and Stata data files into one
common form of generic fields and record types, and imports code/label
lookup files with checks.")
set(CPACK_DEBIAN_WIDGETS_DESCRIPTION "The widgets module of libmodel_KelAdmin (Qt Widgets): the library shows
its decimal prompt, measures paths and fills labels through it; without it
the library answers the prompt No and leaves paths whole.")
set(CPACK_DEBIAN_CODEBOOK_DESCRIPTION "The codebook library KelCodebook: it reads CSPro dictionaries, SPSS and
Stata files as their formats mean them (languages, ranges, special values,
positions, missing values), writes DDI Codebook 2.5 and compares two rounds
of a survey.")
set(CPACK_DEBIAN_DEV_DESCRIPTION "Development files of libmodel_KelAdmin and KelCodebook: headers,
shared-library links, CMake packages (model_KelAdmin, KelCodebook) and
pkg-config files of both libraries.")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "The command-line inspector keladmin-inspect: it prints what the libraries
read from a CSPro, SPSS or Stata description or a lookup file: the front
end's reading with its notes, the codebook, a DDI Codebook 2.5 document, or
the changes between two rounds.")
include(CPack)
