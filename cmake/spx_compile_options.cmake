# Warnings and sanitizers, the same for every target of the project.
add_library(spx_compile_options INTERFACE)
target_compile_options(spx_compile_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${SPX_WERROR}>:-Werror>)
if(SPX_SANITIZE)
  set(spx_sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all
                     -fno-omit-frame-pointer)
  target_compile_options(spx_compile_options INTERFACE ${spx_sanitizers})
  target_link_options(spx_compile_options INTERFACE ${spx_sanitizers})
endif()
