# What is installed besides the programs. An install component has the name of its package; the files of each family
# (debian/, packaging/kelvo.spec, packaging/arch) add the licence and the changelog.
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(generated ${PROJECT_BINARY_DIR}/packaging)
set(metainfo local.kelvo.kelvo.metainfo.xml)
configure_file(${packaging}/${metainfo}.in ${generated}/${metainfo} @ONLY)
foreach(page kelvo kelvo-demo kr310-usb)
  configure_file(${packaging}/man/${page}.1.in ${generated}/${page}.1 @ONLY)
endforeach()

install(FILES ${packaging}/70-kelvo.rules DESTINATION lib/udev/rules.d COMPONENT kelvo)
install(FILES ${packaging}/local.kelvo.kelvo.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT kelvo)
install(FILES ${generated}/${metainfo} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT kelvo)
install(DIRECTORY ${packaging}/icons/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons COMPONENT kelvo)
install(FILES ${generated}/kelvo.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT kelvo)
install(FILES ${generated}/kelvo-demo.1 ${generated}/kr310-usb.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
  COMPONENT kelvo-virtual-pedal)
