# find_package(LumoraKit) gives the target Lumora::Kit and the function lumora_add_plugin().
include(${CMAKE_CURRENT_LIST_DIR}/LumoraKitTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/Bundle.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/LumoraAddPlugin.cmake)
