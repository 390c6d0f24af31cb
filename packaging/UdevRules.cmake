# Makes 70-kelvo.rules of the ids in RVHidClass.h, their one home, and installs it. udev compares the ids as text, and
# sysfs shows them in lower case.
set(ids_header ${PROJECT_SOURCE_DIR}/link/RVHidClass.h)
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ids_header})
file(READ ${ids_header} ids_text)
foreach(id vid pid)
  if(NOT ids_text MATCHES "value_${id} = 0x([0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f]);")
    message(FATAL_ERROR "value_${id} with four hexadecimal digits not found in ${ids_header}")
  endif()
  string(TOLOWER "${CMAKE_MATCH_1}" KELVO_${id})
endforeach()
configure_file(${CMAKE_CURRENT_LIST_DIR}/70-kelvo.rules.in ${PROJECT_BINARY_DIR}/packaging/70-kelvo.rules @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/packaging/70-kelvo.rules DESTINATION lib/udev/rules.d)
