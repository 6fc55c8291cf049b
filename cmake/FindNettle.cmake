# Finds nettle and defines the target Nettle::Nettle. Prefers the static library, so that a program
# that uses two algorithms loads no library for them.
find_path(Nettle_INCLUDE_DIR nettle/blowfish.h)
find_library(Nettle_LIBRARY NAMES libnettle.a nettle libnettle)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Nettle DEFAULT_MSG Nettle_LIBRARY Nettle_INCLUDE_DIR)
if(Nettle_FOUND AND NOT TARGET Nettle::Nettle)
  add_library(Nettle::Nettle UNKNOWN IMPORTED)
  set_target_properties(Nettle::Nettle PROPERTIES
    IMPORTED_LOCATION "${Nettle_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Nettle_INCLUDE_DIR}")
endif()
