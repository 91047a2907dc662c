# The device root that the build makes: what stands for "/" of a device, with everything in its fixed place.
set(LUMORA_DEVICE_ROOT ${CMAKE_BINARY_DIR}/root)
set(LUMORA_BUNDLES ${LUMORA_DEVICE_ROOT}/Library/PreferenceBundles)
set(LUMORA_PLUGINS ${LUMORA_DEVICE_ROOT}/Library/Nevo/Lumora/Plugins)
file(MAKE_DIRECTORY ${LUMORA_DEVICE_ROOT}/var/mobile/Library/Preferences)

# An installation has one too. Programs look for it from their own folder, so that it may lie under any prefix.
set(LUMORA_INSTALLED_ROOT ${CMAKE_INSTALL_LIBDIR}/lumora/device)
file(RELATIVE_PATH LUMORA_ROOT_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/lumora/device)

# Pictures of the lock screen, which programs find from their own folder as well.
file(RELATIVE_PATH LUMORA_WALLPAPERS_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/lumora/wallpapers)

# The same for the profiles of settings that are shipped.
file(RELATIVE_PATH LUMORA_PROFILES_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/lumora/profiles)

# And for the template of the plug-in kit, to which a link leads in the build.
file(RELATIVE_PATH LUMORA_TEMPLATE_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/lumora-kit/template)

# Programs that only other programs call: lumora_helper(TARGET COMPONENT) installs one. The platform library looks for
# them from its own folder.
set(LUMORA_HELPERS ${CMAKE_INSTALL_LIBEXECDIR}/lumora)
file(RELATIVE_PATH LUMORA_HELPERS_FROM_LIBRARIES ${CMAKE_INSTALL_FULL_LIBDIR} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/lumora)
file(RELATIVE_PATH LUMORA_BUILT_HELPERS_FROM_LIBRARIES ${CMAKE_LIBRARY_OUTPUT_DIRECTORY} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
file(RELATIVE_PATH LUMORA_LIBRARIES_FROM_HELPERS ${CMAKE_INSTALL_FULL_LIBEXECDIR}/lumora ${CMAKE_INSTALL_FULL_LIBDIR})
function(lumora_helper target component)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/${LUMORA_LIBRARIES_FROM_HELPERS})
  install(TARGETS ${target} RUNTIME DESTINATION ${LUMORA_HELPERS} COMPONENT ${component})
endfunction()

# Everything that stands in the device root; build it beside the Settings application to open its pages.
add_custom_target(device_root)

include(${CMAKE_CURRENT_LIST_DIR}/Bundle.cmake)

# lumora_install_bundle(TARGET FOLDER COMPONENT) installs what lumora_bundle() has made, into a folder of the device
# root.
function(lumora_install_bundle target folder component)
  set(bundle ${LUMORA_INSTALLED_ROOT}/${folder}/${target}.bundle)
  file(RELATIVE_PATH libraries /${bundle} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/${libraries})
  get_target_property(files ${target} LUMORA_BUNDLE_FILES)
  install(TARGETS ${target} LIBRARY DESTINATION ${bundle} COMPONENT ${component})
  install(FILES ${files} DESTINATION ${bundle} COMPONENT ${component})
endfunction()
