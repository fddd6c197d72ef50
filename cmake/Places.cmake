# Where things are installed, below the prefix: the places of the GNU standards.
include_guard()
if(NOT CMAKE_INSTALL_DOCDIR)
  set(CMAKE_INSTALL_DOCDIR share/doc/printer-native-process CACHE PATH "Documentation" FORCE)
endif()
include(GNUInstallDirs)

# The worker finds its plug-in and its list beside itself and nowhere else.
set(worker_folder ${CMAKE_INSTALL_LIBEXECDIR}/printer-native-process)
# printer-media finds the worker from its own folder, so that the prefix can be moved.
file(RELATIVE_PATH PRINTER_MEDIA_WORKER
  ${CMAKE_INSTALL_FULL_BINDIR}
  ${CMAKE_INSTALL_FULL_LIBEXECDIR}/printer-native-process/PrinterNativeProcess)
