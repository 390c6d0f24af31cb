# Runs between the installation into the packages' trees and their packing, for what Debian asks of every package:
# programs without symbols, manual pages and changelogs compressed. The changelog of the Debian packages is theirs alone,
# as are lintian's exceptions and the form of their licence; an RPM has the plain one.
file(GLOB programs ${CPACK_TEMPORARY_DIRECTORY}/*/usr/bin/*)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)
if(CPACK_GENERATOR STREQUAL RPM)
  file(REMOVE_RECURSE ${CPACK_TEMPORARY_DIRECTORY}/kelvo/usr/share/lintian)
  file(GLOB folders ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*)
  foreach(folder ${folders})
    file(REMOVE ${folder}/changelog.Debian ${folder}/copyright)
    get_filename_component(package ${folder} NAME)
    file(COPY ${CMAKE_CURRENT_LIST_DIR}/../LICENSE DESTINATION ${folder}/../../licenses/${package})
  endforeach()
endif()
file(GLOB documents ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/man1/*.1
  ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/changelog*)
execute_process(COMMAND gzip -9n ${documents} COMMAND_ERROR_IS_FATAL ANY)
