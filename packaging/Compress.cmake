# Called by CPack on what it is about to pack: manual pages and changelogs are compressed, as Debian has them.
file(GLOB_RECURSE texts ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*.1 ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/changelog)
execute_process(COMMAND gzip -9nf ${texts} COMMAND_ERROR_IS_FATAL ANY)
