# The target `docs` writes the reference of the public headers to docs/html in the build directory.
# It fails when a public name has no documentation.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  return()
endif()
list(TRANSFORM SPX_PUBLIC_HEADERS PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE doxygen_input)
list(JOIN doxygen_input " " SPX_DOXYGEN_INPUT)
configure_file(${PROJECT_SOURCE_DIR}/docs/doxygen/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/docs)
add_custom_target(docs COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/Doxyfile VERBATIM)
