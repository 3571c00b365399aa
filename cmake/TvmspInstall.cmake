# What `cmake --install` puts in place, and the Debian package that CPack makes of the same rules:
# the two programs, every file of templates/ under share/tvmspfilter, and the manual pages.
include(GNUInstallDirs)

install(TARGETS tvmspfilter mppinspect RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY "${CMAKE_SOURCE_DIR}/templates/" DESTINATION "${CMAKE_INSTALL_DATADIR}/tvmspfilter")
install(FILES "${CMAKE_SOURCE_DIR}/docs/man/tvmspfilter.1" "${CMAKE_SOURCE_DIR}/docs/man/mppinspect.1"
  DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")

set(TVMSP_PACKAGE_MAINTAINER "tvmspfilter maintainers <maintainers@users.noreply.c-seed-76a88ee1.example>"
  CACHE STRING "Maintainer field of the Debian package")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tvmspfilter)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Converter between MPP plan files and Tarvane bundles")
set(CPACK_PACKAGE_DESCRIPTION
  "tvmspfilter converts plan files of formats 9, 12 and 14 into Tarvane .tvnx bundles and back; \
mppinspect shows what a plan file holds.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${TVMSP_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
# The runtime libraries that the programs link (libxml2, ICU, zlib, the C++ library), as
# dpkg-shlibdeps finds them in the installed programs.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
