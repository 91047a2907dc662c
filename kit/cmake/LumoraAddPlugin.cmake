# lumora_add_plugin(NAME SOURCES file… PRINCIPAL_CLASS name IDENTIFIER text RESOURCES file…)
#
# Builds the App View plug-in NAME.bundle: a folder with the shared object, an Info.plist and the resources. It is made
# in the current binary folder, or in LUMORA_PLUGIN_FOLDER if that is set. PRINCIPAL_CLASS is the name that was given to
# LUMORA_PRINCIPAL_CLASS(); without it, that is NAME. A plug-in of C sources alone has no settings page, so it takes the
# kit's header and no library.
function(lumora_add_plugin name)
  cmake_parse_arguments(PLUGIN "" "PRINCIPAL_CLASS;IDENTIFIER" "SOURCES;RESOURCES" ${ARGN})
  if(NOT PLUGIN_SOURCES OR NOT PLUGIN_IDENTIFIER)
    message(FATAL_ERROR "lumora_add_plugin(${name} …) needs SOURCES and an IDENTIFIER")
  endif()
  if(NOT PLUGIN_PRINCIPAL_CLASS)
    set(PLUGIN_PRINCIPAL_CLASS ${name})
  endif()
  set(folder ${CMAKE_CURRENT_BINARY_DIR})
  if(LUMORA_PLUGIN_FOLDER)
    set(folder ${LUMORA_PLUGIN_FOLDER})
  endif()

  add_library(${name} MODULE ${PLUGIN_SOURCES})
  set_target_properties(${name} PROPERTIES C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(PLUGIN_SOURCES MATCHES "\\.(cpp|cc|cxx)(;|$)")
    target_link_libraries(${name} PRIVATE Lumora::Kit)
  else()
    target_include_directories(${name} PRIVATE $<TARGET_PROPERTY:Lumora::Kit,INTERFACE_INCLUDE_DIRECTORIES>)
  endif()
  lumora_bundle(${name} ${folder}/${name}.bundle PRINCIPAL_CLASS ${PLUGIN_PRINCIPAL_CLASS}
    IDENTIFIER ${PLUGIN_IDENTIFIER} RESOURCES ${PLUGIN_RESOURCES})
endfunction()
