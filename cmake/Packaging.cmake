# What is installed beside the programs, and the two packages, kelvo and kelvo-virtual-pedal, for Debian and as RPM:
# target "package" makes those of this machine. An install component has the name of its package.
set(packages kelvo kelvo-virtual-pedal)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(generated ${PROJECT_BINARY_DIR}/packaging)
include(${packaging}/PedalIds.cmake)

# The list of changes knows the day of this version; the package's own changelog adds the revision and the maintainer.
set(changes ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(changelog ${packaging}/changelog)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changes} ${changelog} ${PROJECT_SOURCE_DIR}/LICENSE)
file(READ ${changes} text)
if(NOT text MATCHES "\n## ${PROJECT_VERSION} - ([0-9]+-[0-9]+-[0-9]+)\n")
  message(FATAL_ERROR "${changes} has no entry with a date for version ${PROJECT_VERSION}")
endif()
set(KELVO_DATE ${CMAKE_MATCH_1})
file(READ ${changelog} text)
if(NOT text MATCHES "^kelvo \\(${PROJECT_VERSION}-([a-z0-9.+~]+)\\)")
  message(FATAL_ERROR "The newest entry of ${changelog} is not of version ${PROJECT_VERSION}")
endif()
set(revision ${CMAKE_MATCH_1})
if(NOT text MATCHES "\n -- ([^\n]*>)  ")
  message(FATAL_ERROR "The newest entry of ${changelog} names nobody")
endif()
set(maintainer "${CMAKE_MATCH_1}")

# Debian wants the licence's lines indented and a dot on the empty ones.
file(READ ${PROJECT_SOURCE_DIR}/LICENSE licence)
string(REGEX REPLACE "^MIT License\n\nCopyright[^\n]*\n\n" "" licence "${licence}")
string(STRIP "${licence}" licence)
string(REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REPLACE "\n" "\n " KELVO_LICENSE " ${licence}")

file(READ ${packaging}/arch/PKGBUILD text)
if(NOT text MATCHES "\npkgver=${PROJECT_VERSION}\n")
  message(FATAL_ERROR "${packaging}/arch/PKGBUILD is not of version ${PROJECT_VERSION}")
endif()

include(${packaging}/Metainfo.cmake)
set(app_id local.kelvo.kelvo)
configure_file(${packaging}/copyright.in ${generated}/copyright @ONLY)
configure_file(${packaging}/${app_id}.metainfo.xml.in ${generated}/${app_id}.metainfo.xml @ONLY)
foreach(page kelvo kelvo-demo kr310-usb)
  configure_file(${packaging}/man/${page}.1.in ${generated}/${page}.1 @ONLY)
endforeach()

install(FILES ${packaging}/${app_id}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT kelvo)
install(FILES ${generated}/${app_id}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT kelvo)
install(DIRECTORY ${packaging}/icons/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons COMPONENT kelvo)
install(FILES ${generated}/kelvo.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT kelvo)
install(FILES ${generated}/kelvo-demo.1 ${generated}/kr310-usb.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
  COMPONENT kelvo-virtual-pedal)
# The lintian before Debian 13 takes no exception from a rule that it does not know.
cmake_host_system_information(RESULT debian QUERY DISTRIB_VERSION_ID)
if(NOT KELVO_HOMEPAGE AND debian VERSION_GREATER_EQUAL 13)
  install(FILES ${packaging}/lintian-overrides RENAME kelvo DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
    COMPONENT kelvo)
endif()
foreach(package ${packages})
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${package})
  install(FILES ${generated}/copyright DESTINATION ${documents} COMPONENT ${package})
  install(FILES ${changes} RENAME changelog DESTINATION ${documents} COMPONENT ${package})
  install(FILES ${changelog} RENAME changelog.Debian DESTINATION ${documents} COMPONENT ${package})
endforeach()

find_program(KELVO_DPKG dpkg-shlibdeps DOC "Makes the packages Debian's")
find_program(KELVO_RPMBUILD rpmbuild DOC "Makes the packages RPMs where dpkg-shlibdeps is not")
if(KELVO_DPKG OR NOT KELVO_RPMBUILD)
  set(CPACK_GENERATOR DEB)
else()
  set(CPACK_GENERATOR RPM)
endif()
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PRE_BUILD_SCRIPTS ${packaging}/FinishTrees.cmake)
# Whatever the umask of whoever builds.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL ${packages})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${revision})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${maintainer}")
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Each package has a summary of its own, the first line of its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_DEBIAN_KELVO_PACKAGE_NAME kelvo)
# Without it no icon is found.
set(CPACK_DEBIAN_KELVO_PACKAGE_DEPENDS hicolor-icon-theme)
# For a desktop without X, and for the desktop's own file chooser; without them there is X, and the toolkit's chooser.
set(CPACK_DEBIAN_KELVO_PACKAGE_RECOMMENDS "qt6-wayland, qt6-gtk-platformtheme")
set(CPACK_DEBIAN_KELVO_PACKAGE_SUGGESTS "kelvo-virtual-pedal, qt6-xdgdesktopportal-platformtheme")
set(CPACK_DEBIAN_KELVO_PACKAGE_CONTROL_EXTRA ${packaging}/postinst ${packaging}/postrm)
set(kelvo_summary "loads cabinets and amps into a KR310 guitar pedal")
set(kelvo_description "Kelvo loads cabinet impulse responses (wave files) and amp models into the
slots of a KR310, a guitar multi-effects pedal, over its USB cable, and clears
cabinet slots.
.
kelvo-check tells whether a file would be taken, and why not. A udev rule
lets the user who sits at the machine talk to the pedal.")
set(CPACK_DEBIAN_KELVO_DESCRIPTION "${kelvo_summary}\n${kelvo_description}")

set(CPACK_DEBIAN_KELVO-VIRTUAL-PEDAL_PACKAGE_NAME kelvo-virtual-pedal)
set(CPACK_DEBIAN_KELVO-VIRTUAL-PEDAL_PACKAGE_DEPENDS "kelvo (= ${PROJECT_VERSION}-${revision})")
set(pedal_summary "virtual KR310 guitar pedal for Kelvo")
set(pedal_description "For trying Kelvo without a pedal, and for testing it: kelvo-demo is Kelvo with
a virtual KR310 in the same process, and kr310-usb plugs a virtual KR310 into
this machine's kernel, where Kelvo finds it like a real one. Both can
misbehave on demand.")
set(CPACK_DEBIAN_KELVO-VIRTUAL-PEDAL_DESCRIPTION "${pedal_summary}\n${pedal_description}")

set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_RELEASE 1)
set(CPACK_RPM_PACKAGE_LICENSE MIT)
set(CPACK_RPM_PACKAGE_VENDOR "The Kelvo authors")
set(CPACK_RPM_PACKAGE_GROUP "Applications/Multimedia")
set(CPACK_RPM_PACKAGE_RELOCATABLE OFF)
# Else each package gets links to its programs by their checksums.
set(CPACK_RPM_SPEC_MORE_DEFINE "%define _build_id_links none")
# Folders that belong to others.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION /usr/lib/udev /usr/lib/udev/rules.d /usr/share/applications
  /usr/share/bash-completion /usr/share/bash-completion/completions /usr/share/icons /usr/share/icons/hicolor
  /usr/share/licenses /usr/share/man /usr/share/man/man1 /usr/share/metainfo)
foreach(size 16x16 22x22 24x24 32x32 48x48 64x64 128x128 256x256 scalable symbolic)
  list(APPEND CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/share/icons/hicolor/${size} /usr/share/icons/hicolor/${size}/apps)
endforeach()
string(REPLACE "\n.\n" "\n\n" CPACK_RPM_KELVO_PACKAGE_DESCRIPTION "${kelvo_description}")
set(CPACK_RPM_KELVO_PACKAGE_NAME kelvo)
set(CPACK_RPM_KELVO_PACKAGE_SUMMARY "${kelvo_summary}")
set(CPACK_RPM_KELVO_PACKAGE_REQUIRES hicolor-icon-theme)
set(CPACK_RPM_KELVO_POST_INSTALL_SCRIPT_FILE ${packaging}/rpm/post)
set(CPACK_RPM_KELVO_POST_UNINSTALL_SCRIPT_FILE ${packaging}/rpm/postun)
set(CPACK_RPM_KELVO-VIRTUAL-PEDAL_PACKAGE_NAME kelvo-virtual-pedal)
set(CPACK_RPM_KELVO-VIRTUAL-PEDAL_PACKAGE_SUMMARY "${pedal_summary}")
set(CPACK_RPM_KELVO-VIRTUAL-PEDAL_PACKAGE_DESCRIPTION "${pedal_description}")
set(CPACK_RPM_KELVO-VIRTUAL-PEDAL_PACKAGE_REQUIRES "kelvo = ${PROJECT_VERSION}-1")
include(CPack)
