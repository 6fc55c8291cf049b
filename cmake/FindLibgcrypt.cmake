# Finds libgcrypt and offers it as Libgcrypt::Libgcrypt.
find_path(Libgcrypt_INCLUDE_DIR gcrypt.h)
find_library(Libgcrypt_LIBRARY NAMES gcrypt libgcrypt)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Libgcrypt DEFAULT_MSG Libgcrypt_LIBRARY Libgcrypt_INCLUDE_DIR)
if(Libgcrypt_FOUND AND NOT TARGET Libgcrypt::Libgcrypt)
  add_library(Libgcrypt::Libgcrypt UNKNOWN IMPORTED)
  set_target_properties(Libgcrypt::Libgcrypt PROPERTIES
    IMPORTED_LOCATION "${Libgcrypt_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Libgcrypt_INCLUDE_DIR}")
endif()
