# Debian packages by `cpack` (see scripts/package): the library, its development files and the
# program. Dependencies on other packages are read from the binaries by dpkg-shlibdeps.
set(spx_package_revision 1)
set(packages_by_component library libspx-base${PROJECT_VERSION_MAJOR}
                          development libspx-base-dev program spx)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME spx-base)
set(CPACK_PACKAGE_CONTACT
    "spx_base maintainers <maintainers@spx-base.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${spx_package_revision})
set(CPACK_DEBIAN_PACKAGE_SOURCE spx-base)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENTS_ALL library development)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_PROGRAM_DEPENDS library)
# Pictures need these; everything else works without them.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "graphviz, gnuplot-nox, librsvg2-bin")
if(SPX_BUILD_CONSOLE)
  list(APPEND CPACK_COMPONENTS_ALL program)
endif()

# CPack indents what follows the first line of a description, which is the synopsis.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(studbook_library "Checks, describes and exports studbooks: the records of animals that are
bred in human care, with their parents, movements and deaths.")

set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libspx-base${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
"studbook analysis library
${studbook_library}
.
This package holds the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libspx-base-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"studbook analysis library - development files
${studbook_library}
.
This package holds the headers, the files for CMake and pkg-config, a guide
for programs that use the library, and an example.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME spx)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION science)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
"check, describe and export studbooks on the command line
Reads a studbook, the records of animals that are bred in human care, from
tables or from a studbook file, finds mistakes in it, lists and summarises it
and exports it for R and for population programs.")

# What Debian wants beside the files of a package, under the package's own name: the copyright, and
# the changes of the project and of the packaging, compressed.
if(SPX_DEBIAN_FILES)
  find_program(SPX_GZIP gzip REQUIRED)
  configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_BINARY_DIR}/changelog COPYONLY)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/changelog ${PROJECT_BINARY_DIR}/changelog.Debian
                 COPYONLY)
  execute_process(COMMAND ${SPX_GZIP} -9nkf changelog changelog.Debian
                  WORKING_DIRECTORY ${PROJECT_BINARY_DIR} COMMAND_ERROR_IS_FATAL ANY)
  while(packages_by_component)
    list(POP_FRONT packages_by_component component package)
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright ${PROJECT_BINARY_DIR}/changelog.gz
                  ${PROJECT_BINARY_DIR}/changelog.Debian.gz
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
  endwhile()
endif()

include(CPack)
