# The device root that the build makes: what stands for "/" of a device, with everything in its fixed place.
set(LUMORA_DEVICE_ROOT ${CMAKE_BINARY_DIR}/root)
set(LUMORA_BUNDLES ${LUMORA_DEVICE_ROOT}/Library/PreferenceBundles)
set(LUMORA_PLUGINS ${LUMORA_DEVICE_ROOT}/Library/Nevo/Lumora/Plugins)
file(MAKE_DIRECTORY ${LUMORA_DEVICE_ROOT}/var/mobile/Library/Preferences)

# Everything that stands in the device root; whoever opens the Settings application builds this beside it.
add_custom_target(device_root)

include(${CMAKE_CURRENT_LIST_DIR}/Bundle.cmake)
