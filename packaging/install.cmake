# What is installed where, and the packages that hold it. The documents keep the places that they
# have to one another, so that their links hold.
include(GNUInstallDirs)

install(TARGETS gemmara RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
configure_file(packaging/gemmara.1 ${CMAKE_BINARY_DIR}/gemmara.1 @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/gemmara.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} USE_SOURCE_PERMISSIONS)

# All documents as one page, gemmara.html, which needs no other file.
find_program(PANDOC pandoc)
if(PANDOC)
  file(GLOB example_documents CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} examples/*/README.md)
  set(documents README.md docs/manual.md docs/architecture.md docs/testing.md CONTRIBUTING.md
    CHANGELOG.md ${example_documents})
  set(page_sources packaging/html/page.html packaging/html/one_page.lua docs/figures/hematite.svg)
  set(page_inputs ${documents} ${page_sources})
  list(TRANSFORM page_inputs PREPEND ${CMAKE_SOURCE_DIR}/)
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/gemmara.html
    COMMAND ${CMAKE_COMMAND} -D PANDOC=${PANDOC} -D "TITLE=Gemmara ${PROJECT_VERSION}"
      -D PAGE=${CMAKE_BINARY_DIR}/gemmara.html -D "DOCUMENTS=${documents}"
      -P packaging/html/make_page.cmake
    DEPENDS ${page_inputs} ${CMAKE_SOURCE_DIR}/packaging/html/make_page.cmake
    WORKING_DIRECTORY ${CMAKE_SOURCE_DIR} COMMENT "Making gemmara.html of all documents" VERBATIM)
  add_custom_target(gemmara_page ALL DEPENDS ${CMAKE_BINARY_DIR}/gemmara.html)
else()
  message(STATUS "gemmara.html is left out: pandoc is not there")
endif()
install(FILES ${CMAKE_BINARY_DIR}/gemmara.html DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL)
install(CODE "
  if(NOT EXISTS \"${CMAKE_BINARY_DIR}/gemmara.html\")
    message(STATUS \"gemmara.html is left out: it was not built, for which pandoc is needed\")
  endif()")

set(CPACK_PACKAGE_NAME gemmara)
set(CPACK_PACKAGE_VENDOR "The Gemmara developers")
set(CPACK_PACKAGE_CONTACT "The Gemmara developers <gemmara@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "bonds and polyhedra through a series of crystal structures")
set(CPACK_PACKAGE_DESCRIPTION
  "An interactive console program that reads series of crystal structures
from CIF, measures the same bonds, angles and coordination polyhedra in
every structure, with standard uncertainties, and writes tables, sheets,
graphs, CIF and data files for equation-of-state fits.")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_FILE_NAME
  gemmara-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})

find_program(DPKG_DEB dpkg-deb)
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
set(CPACK_GENERATOR TGZ)
if(DPKG_DEB)
  list(APPEND CPACK_GENERATOR DEB)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
# A second install, into the Debian package alone, behind that of all files.
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_SOURCE_DIR}/packaging/debian.cmake)
configure_file(packaging/debian_files.cmake.in ${CMAKE_BINARY_DIR}/debian_files.cmake @ONLY)
install(SCRIPT ${CMAKE_BINARY_DIR}/debian_files.cmake COMPONENT debian EXCLUDE_FROM_ALL)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gnuplot-nox | gnuplot")
if(LINE_EDITING)
  string(APPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS ", libedit2")
endif()
if(DPKG_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
else()
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6, libstdc++6, libgcc-s1")
endif()
include(CPack)
