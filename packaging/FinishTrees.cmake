# Runs between the installation into the packages' trees and their packing, for what Debian asks of every package:
# programs without symbols, manual pages and changelogs compressed.
file(GLOB programs ${CPACK_TEMPORARY_DIRECTORY}/*/usr/bin/*)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)
file(GLOB documents ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/man1/*.1
  ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/changelog*)
execute_process(COMMAND gzip -9n ${documents} COMMAND_ERROR_IS_FATAL ANY)
