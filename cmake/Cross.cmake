# Debian's cross compiler for LUMORA_TRIPLET, such as aarch64-linux-gnu, with the libraries of that architecture installed
# beside the machine's own. The kernel has to know an emulator for the programs of ours that the build and the tests run,
# as it does once Debian's qemu-user-binfmt is there.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LUMORA_TRIPLET)
set(CMAKE_SYSTEM_NAME Linux)
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR ${LUMORA_TRIPLET})
set(CMAKE_C_COMPILER ${LUMORA_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${LUMORA_TRIPLET}-g++)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${LUMORA_TRIPLET}/pkgconfig:/usr/share/pkgconfig)
set(CMAKE_INSTALL_LIBDIR lib/${LUMORA_TRIPLET}) # as without a cross compiler on Debian
# Qt's tools are this machine's.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake)
