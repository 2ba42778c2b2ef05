# What is installed where, and the packages that hold it. The documents keep the places that they
# have to one another, so that their links hold.
include(GNUInstallDirs)

install(TARGETS gemmara RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
configure_file(packaging/gemmara.1 ${CMAKE_BINARY_DIR}/gemmara.1 @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/gemmara.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_PACKAGE_NAME gemmara)
set(CPACK_PACKAGE_VENDOR "The Gemmara developers")
set(CPACK_PACKAGE_CONTACT "The Gemmara developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "bonds and polyhedra through a series of crystal structures")
set(CPACK_PACKAGE_DESCRIPTION
  "An interactive console program that reads series of crystal structures from CIF, measures the same
bonds, angles and coordination polyhedra in every structure, with standard uncertainties, and writes
tables, CIF and data files for equation-of-state fits.")
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
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gnuplot-nox | gnuplot")
if(DPKG_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
else()
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6, libstdc++6, libgcc-s1")
  if(LINE_EDITING)
    string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", libedit2")
  endif()
endif()
include(CPack)
