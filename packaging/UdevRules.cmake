# Makes 70-kelvo.rules of the pedal's ids and installs it. udev compares the ids as text, and sysfs shows them in lower
# case.
include(${CMAKE_CURRENT_LIST_DIR}/PedalIds.cmake)
configure_file(${CMAKE_CURRENT_LIST_DIR}/70-kelvo.rules.in ${PROJECT_BINARY_DIR}/packaging/70-kelvo.rules @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/packaging/70-kelvo.rules DESTINATION lib/udev/rules.d COMPONENT kelvo)
