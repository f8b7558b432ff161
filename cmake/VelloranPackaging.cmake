# What is installed beside the program, and the Debian package.

set(VELLORAN_HOMEPAGE_URL "https://velloran.app" CACHE STRING "The address of the project")
set(VELLORAN_BUGTRACKER_URL "https://velloran.app/issues" CACHE STRING "The address that takes reports")
set(VELLORAN_SCREENSHOT_URL "https://velloran.app/screenshots/window.png" CACHE STRING "The picture for software centres")
set(VELLORAN_MAINTAINER "The Velloran developers <packages@velloran.app>" CACHE STRING "Who answers for the package")

set(packaging "${CMAKE_SOURCE_DIR}/packaging")
set(prepared "${CMAKE_BINARY_DIR}/packaging")
set(documents "${CMAKE_INSTALL_DATADIR}/doc/velloran")

install(FILES "${packaging}/app.velloran.Velloran.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(DIRECTORY "${packaging}/icons/hicolor" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons")

configure_file("${packaging}/app.velloran.Velloran.metainfo.xml.in" "${prepared}/app.velloran.Velloran.metainfo.xml" @ONLY)
install(FILES "${prepared}/app.velloran.Velloran.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

install(FILES "${packaging}/debian/copyright" DESTINATION "${documents}")

# Where the program lies is known only when it is installed.
install(
  CODE "
  set(VELLORAN_PROGRAM \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/velloran\")
  configure_file(\"${packaging}/app.velloran.Velloran.service.in\" \"${prepared}/app.velloran.Velloran.service\" @ONLY)")
install(FILES "${prepared}/app.velloran.Velloran.service" DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services")

# A package is made of the libraries of one release, and its name says of which: 1.0.0+deb13.
cmake_host_system_information(RESULT system QUERY DISTRIB_INFO)
if(system_ID STREQUAL "debian")
  set(system_ID deb)
endif()
set(VELLORAN_PACKAGE_VERSION "${PROJECT_VERSION}+${system_ID}${system_VERSION_ID}")

# Manual page and change log are compressed, without a time stamp so that two builds are the same.
find_program(GZIP gzip REQUIRED)
function(velloran_install_compressed template name destination)
  configure_file("${template}" "${prepared}/${name}" @ONLY)
  execute_process(COMMAND "${GZIP}" -9nc "${prepared}/${name}" OUTPUT_FILE "${prepared}/${name}.gz" COMMAND_ERROR_IS_FATAL ANY)
  install(FILES "${prepared}/${name}.gz" DESTINATION "${destination}")
endfunction()
velloran_install_compressed("${packaging}/velloran.1.in" velloran.1 "${CMAKE_INSTALL_MANDIR}/man1")
velloran_install_compressed("${packaging}/debian/changelog.in" changelog "${documents}")

# The libraries are found by looking at the program; what it loads at run time stands in the list of dependencies.
set(dependencies "${CMAKE_SOURCE_DIR}/docs/dependencies.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${dependencies}")
file(STRINGS "${dependencies}" rows REGEX "^\\| `[a-z0-9.+-]+` \\| run \\|")
set(run_time_packages)
foreach(row IN LISTS rows)
  string(REGEX REPLACE "^\\| `([a-z0-9.+-]+)`.*" "\\1" package "${row}")
  list(APPEND run_time_packages "${package}")
endforeach()
if(NOT run_time_packages)
  message(FATAL_ERROR "No run-time package was found in ${dependencies}.")
endif()

file(READ "${packaging}/debian/description" CPACK_DEBIAN_PACKAGE_DESCRIPTION)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velloran)
set(CPACK_PACKAGE_VERSION "${VELLORAN_PACKAGE_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "exact and light auto-clicker")
set(CPACK_PACKAGE_HOMEPAGE_URL "${VELLORAN_HOMEPAGE_URL}")
set(CPACK_PACKAGE_CONTACT "${VELLORAN_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
list(JOIN run_time_packages ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
# Bound keys and the actions of the desktop entry speak through it, and the tick is heard through a sound server.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libglib2.0-bin")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "pipewire-pulse | pulseaudio")
include(CPack)
