# libplist, which the tests and the benchmarks hold our codec to. The name of what frees its bytes is that of 2.3; an
# older one, as in Debian 12, has another.
pkg_check_modules(LIBPLIST REQUIRED IMPORTED_TARGET libplist-2.0)
if(LIBPLIST_VERSION VERSION_LESS 2.3)
  target_compile_definitions(PkgConfig::LIBPLIST INTERFACE plist_mem_free=plist_to_bin_free)
endif()
