# The device root that the build makes: what stands for "/" of a device, with everything in its fixed place.
set(LUMORA_DEVICE_ROOT ${CMAKE_BINARY_DIR}/root)
set(LUMORA_BUNDLES ${LUMORA_DEVICE_ROOT}/Library/PreferenceBundles)
file(MAKE_DIRECTORY ${LUMORA_DEVICE_ROOT}/var/mobile/Library/Preferences)

# Everything that belongs into the device root, beside the bundle.
add_custom_target(device_root)

# lumora_bundle(TARGET FOLDER PRINCIPAL_CLASS IDENTIFIER RESOURCES file…) makes a loadable bundle of a module library:
# a folder with the shared object, an Info.plist and the resources.
function(lumora_bundle target folder)
  cmake_parse_arguments(BUNDLE "" "PRINCIPAL_CLASS;IDENTIFIER" "RESOURCES" ${ARGN})
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX "" LIBRARY_OUTPUT_DIRECTORY ${folder})
  set(BUNDLE_EXECUTABLE ${target})
  configure_file(${CMAKE_SOURCE_DIR}/cmake/Info.plist.in ${folder}/Info.plist @ONLY)
  foreach(resource IN LISTS BUNDLE_RESOURCES)
    cmake_path(GET resource FILENAME name)
    add_custom_command(OUTPUT ${folder}/${name}
      COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/${resource} ${folder}/${name}
      DEPENDS ${resource})
    list(APPEND copies ${folder}/${name})
  endforeach()
  add_custom_target(${target}_resources DEPENDS ${copies})
  add_dependencies(${target} ${target}_resources)
endfunction()
