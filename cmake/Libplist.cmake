# libplist, with which the tests and the benchmarks compare our codec. Before 2.3, as in Debian 12, the function that
# frees its bytes has another name, and its integers have no sign.
pkg_check_modules(LIBPLIST REQUIRED IMPORTED_TARGET libplist-2.0)
if(LIBPLIST_VERSION VERSION_LESS 2.3)
  target_compile_definitions(PkgConfig::LIBPLIST INTERFACE plist_mem_free=plist_to_bin_free LIBPLIST_WITHOUT_SIGNS)
endif()
