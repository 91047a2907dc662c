# Debian's cross compiler for arm64, with the libraries of that architecture installed beside the machine's own. The
# kernel has to know an emulator for the programs of ours that the build and the tests run, as it does once Debian's
# qemu-user-binfmt is there.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)
