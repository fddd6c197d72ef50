# Makes of the installed files, which cpack has put into a folder, what Debian asks of a package.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
set(usr ${root}${CPACK_PACKAGING_INSTALL_PREFIX})
set(worker ${usr}/${CPACK_WORKER_FOLDER})
set(doc ${usr}/share/doc/${CPACK_PACKAGE_NAME})

# Runs a command; what it writes goes into the variable.
function(run variable)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} "${output}" PARENT_SCOPE)
endfunction()

# The list is configuration, which dpkg keeps; the worker reads it through a link.
set(list /etc/${CPACK_PACKAGE_NAME}/SupportPrinterList.xml)
file(MAKE_DIRECTORY ${root}/etc/${CPACK_PACKAGE_NAME})
file(RENAME ${worker}/SupportPrinterList.xml ${root}${list})
file(CREATE_LINK ${list} ${worker}/SupportPrinterList.xml SYMBOLIC)

# Where Debian's zsh looks for what packages complete.
file(RENAME ${usr}/share/zsh/site-functions ${usr}/share/zsh/vendor-completions)

# Papers. Debian's own changes have a page of their own.
set(papers ${CMAKE_CURRENT_LIST_DIR})
file(READ ${papers}/changelog changes)
string(FIND "${changes}" "(${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})" found)
if(NOT found GREATER_EQUAL 0)
  message(FATAL_ERROR "${papers}/changelog does not tell of this version")
endif()
file(COPY_FILE ${papers}/changelog ${doc}/changelog.Debian)
file(RENAME ${doc}/CHANGELOG.md ${doc}/changelog)
file(MAKE_DIRECTORY ${usr}/share/lintian/overrides)
file(COPY_FILE ${papers}/lintian-overrides ${usr}/share/lintian/overrides/${CPACK_PACKAGE_NAME})
file(GLOB pages ${usr}/share/man/man*/*)
run(ignored gzip -9n ${doc}/changelog ${doc}/changelog.Debian ${pages})
file(GLOB_RECURSE plain LIST_DIRECTORIES false ${doc}/* ${usr}/share/lintian/* ${root}/etc/*)
run(ignored chmod 644 ${plain})
run(ignored find ${root} -type d -exec chmod 755 {} +)  # whatever the umask is

# Dependencies. A search loads its module, and with it the printing system's or net-snmp's library,
# only where it is switched on; without these libraries everything else works.
set(modules ${worker}/ZIO/ZIOP.plugin/Contents/Linux)
set(searches ${modules}/libZIOPNetwork.so ${modules}/libZIOPQueues.so)
file(GLOB programs ${usr}/bin/* ${worker}/PrinterNativeProcess ${worker}/*.so ${modules}/*.so)
list(REMOVE_ITEM programs ${searches})
set(scratch ${CPACK_TOPLEVEL_DIRECTORY}/shlibdeps)
file(WRITE ${scratch}/debian/control
  "Source: ${CPACK_PACKAGE_NAME}\n\nPackage: ${CPACK_PACKAGE_NAME}\nArchitecture: any\n")
file(MAKE_DIRECTORY ${root}/DEBIAN)  # by which the root is told when $ORIGIN is looked up
run(needs ${CMAKE_COMMAND} -E chdir ${scratch} dpkg-shlibdeps -O --ignore-missing-info
  -dDepends ${programs} -dRecommends ${searches})
file(REMOVE_RECURSE ${root}/DEBIAN)
foreach(kind Depends Recommends)
  if(NOT needs MATCHES "shlibs:${kind}=([^\n]*)")
    message(FATAL_ERROR "dpkg-shlibdeps found nothing for ${kind}")
  endif()
  string(TOUPPER ${kind} upper)
  set(CPACK_DEBIAN_PACKAGE_${upper} "${CMAKE_MATCH_1}")
endforeach()
