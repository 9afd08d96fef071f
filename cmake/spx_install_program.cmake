# The program, and the man page and completions that it writes itself, so that they always match it.
install(TARGETS spx RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)

set(spx_pages_dir ${PROJECT_BINARY_DIR}/program_pages)
file(MAKE_DIRECTORY ${spx_pages_dir})
find_program(SPX_GZIP gzip REQUIRED)

add_custom_command(OUTPUT ${spx_pages_dir}/spx.1.gz
  COMMAND spx --man > ${spx_pages_dir}/spx.1
  COMMAND ${SPX_GZIP} -9nf ${spx_pages_dir}/spx.1
  DEPENDS spx VERBATIM)
install(FILES ${spx_pages_dir}/spx.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
        COMPONENT program)
set(program_pages ${spx_pages_dir}/spx.1.gz)

# Adds the completion for a shell, under the name and in the directory where the shell looks for it.
function(spx_add_completion shell name directory)
  set(page ${spx_pages_dir}/${name})
  add_custom_command(OUTPUT ${page} COMMAND spx --completion ${shell} > ${page} DEPENDS spx
                     VERBATIM)
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_DATADIR}/${directory} COMPONENT program)
  set(program_pages ${program_pages} ${page} PARENT_SCOPE)
endfunction()

spx_add_completion(bash spx bash-completion/completions)
spx_add_completion(zsh _spx zsh/vendor-completions)
spx_add_completion(fish spx.fish fish/vendor_completions.d)

add_custom_target(program_pages ALL DEPENDS ${program_pages})
