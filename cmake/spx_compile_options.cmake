option(SPX_PRECOMPILE "Precompile the headers of other libraries: faster builds" OFF)

# Precompiles the standard library's headers and those given, where SPX_PRECOMPILE is set.
function(spx_precompile target)
  if(SPX_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <cmath> <cstdint> <filesystem>
      <fstream> <functional> <iostream> <limits> <map> <memory> <optional> <regex> <set> <sstream>
      <string> <string_view> <unordered_map> <vector> ${ARGN})
  endif()
endfunction()

# Warnings and sanitizers, the same for every target of the project.
add_library(spx_compile_options INTERFACE)
target_compile_options(spx_compile_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  # GCC 12 sees overlapping copies in the optimised concatenation of a literal and a string.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  $<$<BOOL:${SPX_WERROR}>:-Werror>)
if(SPX_SANITIZE)
  set(spx_sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all
                     -fno-omit-frame-pointer)
  target_compile_options(spx_compile_options INTERFACE ${spx_sanitizers})
  target_link_options(spx_compile_options INTERFACE ${spx_sanitizers})
endif()
if(SPX_BUILD_FUZZ)
  # Counts which code an input reaches, in the library and the console too.
  target_compile_options(spx_compile_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
