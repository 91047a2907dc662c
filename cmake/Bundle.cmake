# lumora_bundle(TARGET FOLDER PRINCIPAL_CLASS IDENTIFIER RESOURCES file…) makes a loadable bundle of a module library:
# a folder with the shared object, an Info.plist and the resources. Installed with the plug-in kit.
set(LUMORA_INFO_PLIST ${CMAKE_CURRENT_LIST_DIR}/Info.plist.in)

function(lumora_bundle target folder)
  cmake_parse_arguments(BUNDLE "" "PRINCIPAL_CLASS;IDENTIFIER" "RESOURCES" ${ARGN})
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX "" LIBRARY_OUTPUT_DIRECTORY ${folder})
  set(BUNDLE_EXECUTABLE ${target})
  configure_file(${LUMORA_INFO_PLIST} ${folder}/Info.plist @ONLY)
  set(copies)
  foreach(resource IN LISTS BUNDLE_RESOURCES)
    cmake_path(GET resource FILENAME name)
    add_custom_command(OUTPUT ${folder}/${name}
      COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/${resource} ${folder}/${name}
      DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${resource})
    list(APPEND copies ${folder}/${name})
  endforeach()
  set_target_properties(${target} PROPERTIES LUMORA_BUNDLE_FILES "${folder}/Info.plist;${copies}")
  add_custom_target(${target}_resources DEPENDS ${copies})
  add_dependencies(${target} ${target}_resources)
endfunction()
