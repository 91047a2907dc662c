# One target per room. A room sees its own headers and those of the rooms it links, and nothing else: each target
# includes "room/Header.h" through a folder of links made for it alone, so that a forbidden include does not compile.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

include(GNUInstallDirs)
set(CMAKE_INSTALL_RPATH $ORIGIN/../${CMAKE_INSTALL_LIBDIR}) # programs find the platform library beside them

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(lumora_flags INTERFACE)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  # Files beyond two gigabytes and times beyond 2038.
  add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)
  target_compile_options(lumora_flags INTERFACE -Wno-psabi) # on ARM, about compilers before GCC 7.1
endif()
target_compile_options(lumora_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-align -Wformat=2 -Wimplicit-fallthrough
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor;-Woverloaded-virtual;-Wold-style-cast>
  -fno-strict-overflow -fstack-protector-strong)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Unique symbols would pin a plug-in's copy of an inline variable to the first library that brought one.
  target_compile_options(lumora_flags INTERFACE -fno-gnu-unique -Wduplicated-cond -Wlogical-op)
endif()
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC takes every file but the first for a header, in which unnamed namespaces would be a mistake.
  target_compile_options(lumora_flags INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
endif()
if(LUMORA_SANITIZE)
  add_compile_options(-fsanitize=${LUMORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=${LUMORA_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # As GCC says it.
    if(LUMORA_SANITIZE STREQUAL "thread")
      add_compile_definitions(__SANITIZE_THREAD__)
    else()
      add_compile_definitions(__SANITIZE_ADDRESS__)
    endif()
    # For this check, which GCC does without, a plug-in would export the types of the functions that it calls.
    add_compile_options(-fno-sanitize=function)
  elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Instrumented code misleads this warning about paths that cannot be taken.
    target_compile_options(lumora_flags INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()

# lumora_headers(TARGET ROOM_OR_HEADER…) lets TARGET include the headers of the rooms named, single headers of others,
# and nothing else. Stands once for each target.
function(lumora_headers target)
  set(view ${CMAKE_BINARY_DIR}/include/${target})
  file(REMOVE_RECURSE ${view}) # what an earlier layout has left
  foreach(seen IN LISTS ARGN)
    cmake_path(GET seen PARENT_PATH folder)
    file(MAKE_DIRECTORY ${view}/${folder})
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${seen} ${view}/${seen} SYMBOLIC)
  endforeach()
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE" OR type STREQUAL "MODULE_LIBRARY")
    target_include_directories(${target} PRIVATE ${view})
  elseif(type STREQUAL "INTERFACE_LIBRARY")
    target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${view}>)
  else()
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${view}>)
  endif()
endfunction()
