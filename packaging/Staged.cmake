# Called by CPack on what it is about to pack: manual pages and changelogs are compressed, as Debian has them.
file(GLOB_RECURSE texts ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*.1 ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/changelog)
execute_process(COMMAND gzip -9nf ${texts} COMMAND_ERROR_IS_FATAL ANY)

# All users may enter the folders, whatever the umask of the build. (CMake has no option for the folders above others.)
file(GLOB_RECURSE paths LIST_DIRECTORIES true ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*)
foreach(path IN LISTS paths)
  if(IS_DIRECTORY ${path} AND NOT IS_SYMLINK ${path})
    file(CHMOD ${path} DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
      GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endif()
endforeach()
