# Read by cpack for each kind of package: a Debian package takes the component debian as well.
if(CPACK_GENERATOR STREQUAL "DEB")
  list(GET CPACK_INSTALL_CMAKE_PROJECTS 0 build)
  list(APPEND CPACK_INSTALL_CMAKE_PROJECTS ${build} gemmara debian /)
endif()
