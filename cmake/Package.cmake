# `cpack -G DEB` in the build folder: the Debian package.
include_guard()
set(CPACK_PACKAGE_NAME printer-native-process)
set(CPACK_PACKAGE_CONTACT "PrinterNativeProcess maintainers <maintainers@printer-native-process.example>"
  CACHE STRING "Who answers for the package: NAME <ADDRESS>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "media settings of large-format printers, for host applications")
set(CPACK_PACKAGE_DESCRIPTION
"PrinterNativeProcess reads and writes the media settings that large-format
inkjet printers keep: platen gap, heaters, drying, suction, tension, feed
speed and so on. A host application starts it and exchanges JSON with it
through its standard streams. It also lists the printers that the machine
reaches, and reads their status and firmware version.

The package also holds printer-media, which does the same on the command
line, virtual-printer, a printer to test against, a dissector for Wireshark,
and what an I/O plug-in is built with.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/conffiles)
set(CPACK_WORKER_FOLDER ${worker_folder})
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/Stage.cmake)
include(CPack)
