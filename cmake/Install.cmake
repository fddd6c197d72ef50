# What `cmake --install` puts where. docs/installation.md is about the same.
include_guard()
include(cmake/Places.cmake)

set(bundle_contents ${worker_folder}/ZIO/ZIOP.plugin/Contents)

install(TARGETS PrinterNativeProcess RUNTIME DESTINATION ${worker_folder})
install(TARGETS corefoundation LIBRARY DESTINATION ${worker_folder})
install(TARGETS ZIOP libZIOPDiscovery libZIOPNetwork libZIOPQueues
  LIBRARY DESTINATION ${bundle_contents}/Linux)
get_target_property(modules_folder ZIOP LIBRARY_OUTPUT_DIRECTORY)
install(FILES ${modules_folder}/../Info.plist DESTINATION ${bundle_contents})

# The list is the administrator's: one that is there stays as it is.
install(CODE "set(folder [[${worker_folder}]])")
install(CODE "set(list [[${PROJECT_SOURCE_DIR}/port_driver/SupportPrinterList.xml]])")
install(CODE [[
  cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}")
  set(installed "$ENV{DESTDIR}${folder}/SupportPrinterList.xml")
  if(EXISTS "${installed}" OR IS_SYMLINK "${installed}")
    message(STATUS "Kept: ${installed}")
  else()
    file(INSTALL DESTINATION "${folder}" TYPE FILE FILES "${list}")
  endif()
]])

install(TARGETS printer-media virtual-printer RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES printer_media/completions/printer-media.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME printer-media)
install(FILES printer_media/completions/_printer-media
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
install(FILES printer_media/printer-media.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# What a plug-in is built with. The flags are found from where the file lies, so that they stay right
# when the prefix is moved; nothing in it depends on the machine's architecture.
set(include_folder ${CMAKE_INSTALL_INCLUDEDIR}/printer-native-process)
install(FILES printer_io/ZIOPlugin.h DESTINATION ${include_folder}/printer_io)
install(DIRECTORY corefoundation/include/CoreFoundation DESTINATION ${include_folder})
set(pkgconfig_folder ${CMAKE_INSTALL_FULL_DATADIR}/pkgconfig)
file(RELATIVE_PATH include_path
  ${pkgconfig_folder} ${CMAKE_INSTALL_FULL_INCLUDEDIR}/printer-native-process)
file(RELATIVE_PATH worker_path
  ${pkgconfig_folder} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/printer-native-process)
string(REPLACE " " "\\ " include_path "${include_path}")
string(REPLACE " " "\\ " worker_path "${worker_path}")
configure_file(packaging/printer-native-process.pc.in printer-native-process.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/printer-native-process.pc
  DESTINATION ${CMAKE_INSTALL_DATADIR}/pkgconfig)
install(FILES ${PROJECT_BINARY_DIR}/wireshark/printer_command.lua
  DESTINATION ${CMAKE_INSTALL_DATADIR}/printer-native-process/wireshark)

# udev looks below lib, whatever the machine's folder for libraries is called.
install(FILES packaging/udev/70-printer-native-process.rules DESTINATION lib/udev/rules.d)

foreach(section 1 5 7)
  file(GLOB pages CONFIGURE_DEPENDS packaging/man/*.${section})
  install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
install(FILES CHANGELOG.md README.md SECURITY.md packaging/copyright
  DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
  PATTERN __pycache__ EXCLUDE)

# All that is installed, without tests.
add_custom_target(shipped)
add_dependencies(shipped PrinterNativeProcess corefoundation ZIOP libZIOPDiscovery libZIOPNetwork
  libZIOPQueues printer-media virtual-printer dissector)
