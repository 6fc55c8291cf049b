# Rules for `cmake --install`. The component Programs is the content of the packages; the component
# Development is the library for other programs, which find_package(Zaf2Xml) finds.
include(CMakePackageConfigHelpers)

# No directory is writable for others, even if the user's umask would allow it.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME Programs)
install(TARGETS Zaf2Xml zaf RUNTIME)
file(GLOB shared CONFIGURE_DEPENDS share/*.dtd share/*.schema.json)
install(FILES ${shared} DESTINATION ${CMAKE_INSTALL_DATADIR}/zaf2xml)
install(FILES README.md CHANGELOG.md cmake/debian/copyright
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zaf2xml)
if(NOT WIN32)
  file(GLOB pages CONFIGURE_DEPENDS man/*.1)
  install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

# zaf2xml_completion(SHELL FILE): installs the script that the program prints for a shell.
function(zaf2xml_completion shell file)
  cmake_path(GET file FILENAME name)
  set(script ${PROJECT_BINARY_DIR}/completions/${shell}/${name})
  add_custom_command(OUTPUT ${script}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/completions/${shell}
    COMMAND zaf completion ${shell} > ${script}
    DEPENDS zaf VERBATIM)
  add_custom_target(completion_${shell} ALL DEPENDS ${script})
  cmake_path(GET file PARENT_PATH directory)
  install(FILES ${script} DESTINATION ${CMAKE_INSTALL_DATADIR}/${directory})
endfunction()

if(NOT CMAKE_CROSSCOMPILING)
  zaf2xml_completion(bash bash-completion/completions/zaf)
  zaf2xml_completion(zsh zsh/site-functions/_zaf)
  zaf2xml_completion(fish fish/vendor_completions.d/zaf.fish)
endif()

# The library: its modules, and the public headers with all headers that they include.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME Development)
set(archives ${CMAKE_INSTALL_LIBDIR}/zaf2xml)
install(TARGETS foundation dom fields actions flow database builders services all_actions appfile
  EXPORT Zaf2XmlTargets ARCHIVE DESTINATION ${archives})
if(ZAF2XML_LTO AND CMAKE_OBJCOPY)
  # The intermediate code is specific to this compiler, and its section names are random.
  install(CODE "
    file(GLOB files \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${archives}/*.a\")
    foreach(file IN LISTS files)
      execute_process(COMMAND ${CMAKE_OBJCOPY} --enable-deterministic-archives --wildcard
        --remove-section=.gnu.lto_* --strip-symbol=__gnu_lto_v1 \${file} COMMAND_ERROR_IS_FATAL ANY)
    endforeach()")
endif()
set(public_headers appfile/TZanfoFile.h appfile/TLoadProgress.h fields/TLossObserver.h)
set(unread ${public_headers})
while(unread)
  list(POP_FRONT unread header)
  cmake_path(GET header PARENT_PATH directory)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zaf2xml/${directory})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
  file(STRINGS ${header} includes REGEX "^#include \"")
  foreach(include IN LISTS includes)
    string(REGEX REPLACE "^#include \"(.*)\".*" "\\1" include "${include}")
    if(NOT include IN_LIST public_headers)
      list(APPEND public_headers ${include})
      list(APPEND unread ${include})
    endif()
  endforeach()
endwhile()

set(configuration ${CMAKE_INSTALL_LIBDIR}/cmake/Zaf2Xml)
install(EXPORT Zaf2XmlTargets NAMESPACE Zaf2Xml:: DESTINATION ${configuration})
write_basic_package_version_file(Zaf2XmlConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/Zaf2XmlConfig.cmake cmake/FindNettle.cmake
  ${PROJECT_BINARY_DIR}/Zaf2XmlConfigVersion.cmake DESTINATION ${configuration})
