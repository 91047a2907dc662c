# Debian packages: cmake --preset package, then cmake --build --preset package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lumora)
set(CPACK_PACKAGE_CONTACT "The Lumora maintainers <support@nevo.example>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/Staged.cmake)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "") # this is the only packaging
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

# debian_package(COMPONENT PACKAGE SECTION DEPENDS text RECOMMENDS text SUGGESTS text DESCRIPTION line…): the first line
# of the description is the synopsis. dpkg-shlibdeps finds out the packages of other libraries.
macro(debian_package component package section)
  cmake_parse_arguments(PACKAGE "" "DEPENDS;RECOMMENDS;SUGGESTS" "DESCRIPTION" ${ARGN})
  string(TOUPPER ${component} name)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  list(JOIN PACKAGE_DESCRIPTION "\n" CPACK_DEBIAN_${name}_DESCRIPTION)
  set(CPACK_DEBIAN_${name}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${name}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${name}_PACKAGE_DEPENDS ${PACKAGE_DEPENDS})
  set(CPACK_DEBIAN_${name}_PACKAGE_RECOMMENDS ${PACKAGE_RECOMMENDS})
  set(CPACK_DEBIAN_${name}_PACKAGE_SUGGESTS ${PACKAGE_SUGGESTS})
  if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/${component}.lintian-overrides)
    install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/debian/${component}.lintian-overrides RENAME ${package}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
  endif()
  install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/debian/copyright ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endmacro()

set(libraries liblumora${KIT_VERSION})
set(same "(= ${PROJECT_VERSION})")
set(drawing "lumora-common ${same}, qml6-module-qtquick, qml6-module-qtquick-window, qml6-module-qtqml-workerscript")

debian_package(settings lumora-settings utils
  DEPENDS "${libraries} ${same}, ${drawing}, qml6-module-qtquick-templates"
  RECOMMENDS "lumora-tweak, lumora-lockscreen, fonts-inter, qt6-wayland, qml6-module-qtquick-dialogs, qml6-module-qtquick-controls, qml6-module-qtquick-layouts, qml6-module-qt-labs-folderlistmodel"
  SUGGESTS "lumora-samples, default-mta | mail-transport-agent"
  DESCRIPTION
    "settings of a lock-screen enhancement, the application"
    "Lumora shows rows of applications and plug-in views on a lock screen."
    "This is the application that shows its settings and changes them: which"
    "applications and views there are and in which order, what the passcode and"
    "date views show, fonts and colours."
    "The settings are kept by lumora-tweak or another program that speaks its ports.")
debian_package(lockscreen lumora-lockscreen utils
  DEPENDS "${libraries} ${same}, ${drawing}"
  RECOMMENDS "lumora-tweak, fonts-inter, qt6-wayland"
  SUGGESTS "lumora-settings, lumora-samples"
  DESCRIPTION
    "settings of a lock-screen enhancement, their effect"
    "Shows a lock screen as the settings of Lumora make it, while they change, in a"
    "window of its own. It takes taps, swipes and keys as a phone does, saves"
    "pictures, and tells as JSON what is on the screen.")
debian_package(common lumora-common utils
  DEPENDS "${libraries} ${same}"
  RECOMMENDS librsvg2-common
  DESCRIPTION
    "settings of a lock-screen enhancement, what its applications share"
    "The wallpapers of the lock screen, profiles of settings, the library that finds"
    "the installed applications, and the program that draws their icons.")
debian_package(tweak lumora-tweak utils
  DEPENDS "${libraries} ${same}"
  SUGGESTS "lumora-settings, lumoractl"
  DESCRIPTION
    "settings of a lock-screen enhancement, kept and handed out"
    "Keeps the settings of Lumora on disk for each user, and hands them out to the"
    "programs that ask. It is started when a user logs in.")
debian_package(lumoractl lumoractl utils
  DEPENDS "${libraries} ${same}"
  RECOMMENDS "lumora-tweak, lumora-common"
  SUGGESTS lumora-settings
  DESCRIPTION
    "settings of a lock-screen enhancement, from a shell"
    "Reads and changes the settings of Lumora as JSON, keeps them as profiles, finds"
    "rows of its pages, and tells what is wrong with plug-ins that do not show up.")
debian_package(libraries ${libraries} libs
  DESCRIPTION
    "settings of a lock-screen enhancement, the libraries"
    "The platform layer under the settings of Lumora, and the library that plug-ins"
    "with settings pages stand on.")
debian_package(kit liblumora-dev libdevel
  DEPENDS "${libraries} ${same}"
  SUGGESTS "g++, cmake, pkg-config, lumoractl"
  DESCRIPTION
    "settings of a lock-screen enhancement, to write plug-ins"
    "Headers, a CMake package, a pkg-config file, documents and a template: all that"
    "it takes to write a view for Lumora's lock screen with a settings page.")
debian_package(samples lumora-samples utils
  DEPENDS "${libraries} ${same}"
  RECOMMENDS lumora-settings
  DESCRIPTION
    "settings of a lock-screen enhancement, samples"
    "Four sample plug-ins, and sample applications that fill the lists of Lumora's"
    "settings where few real ones are installed. They appear nowhere else.")

# CPack would take every plug-in for a library.
set(shlibs)
foreach(library desktop kit platform)
  string(APPEND shlibs "liblumora-${library} ${KIT_VERSION} ${libraries} ${same}\n")
endforeach()
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/shlibs ${shlibs})
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_BINARY_DIR}/shlibs ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers)
set(CPACK_DEBIAN_TWEAK_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst ${CMAKE_CURRENT_SOURCE_DIR}/debian/postrm)

include(CPack)
