# What targets with a QML module have in common.

# lumora_compile_qml_ahead(TARGET) has the QML of TARGET's module compiled to byte code by the build: a window opens a
# third sooner. The files that the toolkit makes of it are compiled as one, which takes seconds in place of minutes.
# Stands after qt_add_qml_module().
function(lumora_compile_qml_ahead target)
  set_target_properties(${target} PROPERTIES QT_QMLCACHEGEN_ARGUMENTS --only-bytecode UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  get_target_property(generated ${target} SOURCES)
  set(written ${generated})
  list(FILTER generated INCLUDE REGEX "_qml\\.cpp$")
  set_source_files_properties(${generated} PROPERTIES UNITY_GROUP qml)
  get_target_property(size ${target} UNITY_BUILD_BATCH_SIZE) # 8 unless the build asks for another one
  if(CMAKE_UNITY_BUILD)
    list(FILTER written INCLUDE REGEX "^[a-z]+/.*\\.cpp$|^[A-Za-z]+\\.cpp$")
    set(count 0)
    foreach(file IN LISTS written)
      math(EXPR group "${count} / ${size}")
      math(EXPR count "${count} + 1")
      set_source_files_properties(${file} PROPERTIES UNITY_GROUP ${group})
    endforeach()
  endif()
endfunction()
