# What is installed beside the programs, and the two Debian packages, kelvo and kelvo-virtual-pedal: target "package".
# An install component has the name of its package.
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
foreach(package ${packages})
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${package})
  install(FILES ${generated}/copyright DESTINATION ${documents} COMPONENT ${package})
  install(FILES ${changes} RENAME changelog DESTINATION ${documents} COMPONENT ${package})
  install(FILES ${changelog} RENAME changelog.Debian DESTINATION ${documents} COMPONENT ${package})
endforeach()

set(CPACK_GENERATOR DEB)
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
set(CPACK_DEBIAN_KELVO_DESCRIPTION "loads cabinets and amps into a KR310 guitar pedal
Kelvo loads cabinet impulse responses (wave files) and amp models into the
slots of a KR310, a guitar multi-effects pedal, over its USB cable, and clears
cabinet slots.
.
kelvo-check tells whether a file would be taken, and why not. A udev rule
lets the user who sits at the machine talk to the pedal.")

set(CPACK_DEBIAN_KELVO-VIRTUAL-PEDAL_PACKAGE_NAME kelvo-virtual-pedal)
set(CPACK_DEBIAN_KELVO-VIRTUAL-PEDAL_PACKAGE_DEPENDS "kelvo (= ${PROJECT_VERSION}-${revision})")
set(CPACK_DEBIAN_KELVO-VIRTUAL-PEDAL_DESCRIPTION "virtual KR310 guitar pedal for Kelvo
For trying Kelvo without a pedal, and for testing it: kelvo-demo is Kelvo with
a virtual KR310 in the same process, and kr310-usb plugs a virtual KR310 into
this machine's kernel, where Kelvo finds it like a real one. Both can
misbehave on demand.")
include(CPack)
