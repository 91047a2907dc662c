include_guard(GLOBAL) # benchmarks need them, too

# Application-list libraries for tests to copy into a device root of theirs; they know their files by FAKE_APPLIST and
# ODD_APPLIST.
foreach(fixture FakeAppList OddAppList)
  add_library(${fixture} MODULE ${CMAKE_SOURCE_DIR}/tests/applist/${fixture}.c)
  target_compile_options(${fixture} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion)
  set_target_properties(${fixture} PROPERTIES PREFIX "" SUFFIX ".dylib" C_EXTENSIONS OFF)
  lumora_headers(${fixture} applist)
endforeach()
target_link_options(OddAppList PRIVATE -Wl,-z,lazy)
