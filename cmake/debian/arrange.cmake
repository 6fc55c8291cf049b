# Rearranges the files that `cmake --install` installed for a Debian package: moves and compresses
# them as Debian's policy requires. cpack runs it before it creates the package.
set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
set(documents ${share}/doc/zaf2xml)

file(MAKE_DIRECTORY ${share}/zsh/vendor-completions)
file(RENAME ${share}/zsh/site-functions/_zaf ${share}/zsh/vendor-completions/_zaf)
file(REMOVE_RECURSE ${share}/zsh/site-functions)
file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/changelog ${documents}/changelog)

file(GLOB compressed ${share}/man/man1/*.1 ${documents}/changelog ${documents}/CHANGELOG.md)
execute_process(COMMAND gzip -9n ${compressed} COMMAND_ERROR_IS_FATAL ANY)

# Equal modes and times in every build.
file(GLOB_RECURSE everything LIST_DIRECTORIES ON ${CPACK_TEMPORARY_DIRECTORY}/usr/*)
execute_process(COMMAND chmod -R u=rwX,go=rX ${CPACK_TEMPORARY_DIRECTORY}/usr
  COMMAND_ERROR_IS_FATAL ANY)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH}
    ${CPACK_TEMPORARY_DIRECTORY}/usr ${everything} COMMAND_ERROR_IS_FATAL ANY)
endif()
