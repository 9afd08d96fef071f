# The program, and the man page and completions that it writes about itself, so that they cannot
# fall behind it.
install(TARGETS spx RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)

set(spx_pages_dir ${PROJECT_BINARY_DIR}/program_pages)
find_program(SPX_GZIP gzip REQUIRED)

# Adds one page: the program prints it with the options given, and it is installed in DIRECTORY.
function(spx_add_program_page name directory)
  set(page ${spx_pages_dir}/${name})
  add_custom_command(OUTPUT ${page}.stamp BYPRODUCTS ${page}
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:spx> "-DOPTIONS=${ARGN}" -DPAGE=${page}
            -DSTAMP=${page}.stamp -DGZIP=${SPX_GZIP}
            -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/write_program_page.cmake
    DEPENDS spx ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/write_program_page.cmake VERBATIM)
  set_property(GLOBAL APPEND PROPERTY spx_program_pages ${page}.stamp)
  install(FILES ${page} DESTINATION ${directory} COMPONENT program OPTIONAL)
endfunction()

spx_add_program_page(spx.1.gz ${CMAKE_INSTALL_MANDIR}/man1 --man)
spx_add_program_page(spx ${CMAKE_INSTALL_DATADIR}/bash-completion/completions --completion bash)
spx_add_program_page(_spx ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions --completion zsh)
spx_add_program_page(spx.fish ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
                     --completion fish)

get_property(program_pages GLOBAL PROPERTY spx_program_pages)
add_custom_target(program_pages ALL DEPENDS ${program_pages})
