# The packages that cpack builds: scripts/package for Debian, scripts/test-windows for Windows.
set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};${PROJECT_NAME};Programs;/")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_VENDOR Zaf2Xml)

if(WIN32)
  # An archive and an installer; both unpack to bin and share.
  set(CPACK_GENERATOR ZIP NSIS)
  set(CPACK_PACKAGE_INSTALL_DIRECTORY Zaf2Xml)
  set(CPACK_NSIS_MODIFY_PATH ON)
  set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(CPACK_NSIS_DEFINES "Target amd64-unicode")
  endif()
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_PACKAGE_NAME zaf2xml)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Zaf2Xml maintainers <maintainers@zaf2xml.invalid>")
  set(CPACK_DEBIAN_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "converts Zanfo 3.x application files to XML documents")
  set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Zanfo 3.x keeps applications and their classes in binary files (ZAF, ZCF).
zaf converts them to Zanfo 2000 XML documents and back, checks what was
converted, reports which file failed, where and why, and lists what a
document does not hold of its file. Zaf2Xml is the command that existing
scripts call; it writes the same documents.")
  set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/arrange.cmake)
endif()
include(CPack)
