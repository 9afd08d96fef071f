# What `cmake --install` writes. Three components, one per package: library (for programs at run
# time), development (for linking it) and program.
include(CMakePackageConfigHelpers)

set(spx_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/spx_base)

# Library and headers. A header is installed below the path by which the sources include it.
install(TARGETS spx_base EXPORT spx_base_targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
          NAMELINK_COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(header IN LISTS SPX_PUBLIC_HEADERS)
  cmake_path(GET header PARENT_PATH header_dir)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} COMPONENT development
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${header_dir})
endforeach()

# CMake package: find_package(spx_base 1.1), target spx_base::spx_base.
install(EXPORT spx_base_targets NAMESPACE spx_base:: FILE spx_base-targets.cmake
        DESTINATION ${spx_package_dir} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/spx_base-config.cmake.in
  ${PROJECT_BINARY_DIR}/spx_base-config.cmake INSTALL_DESTINATION ${spx_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/spx_base-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/spx_base-config.cmake
              ${PROJECT_BINARY_DIR}/spx_base-config-version.cmake
        DESTINATION ${spx_package_dir} COMPONENT development)

# pkg-config. The prefix is relative to the file, so that the installed tree can be moved.
cmake_path(SET spx_pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
           BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${spx_pkgconfig_dir}
           OUTPUT_VARIABLE spx_prefix_from_pkgconfig)
configure_file(${CMAKE_CURRENT_LIST_DIR}/spx_base.pc.in ${PROJECT_BINARY_DIR}/spx_base.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/spx_base.pc DESTINATION ${spx_pkgconfig_dir}
        COMPONENT development)

# Pages for hosts go with the headers, all other pages with the program. Each Debian package has a
# directory of its own for them.
set(SPX_DEVELOPMENT_DOCDIR ${CMAKE_INSTALL_DOCDIR})
set(SPX_PROGRAM_DOCDIR ${CMAKE_INSTALL_DOCDIR})
if(SPX_DEBIAN_FILES)
  set(SPX_DEVELOPMENT_DOCDIR ${CMAKE_INSTALL_DATADIR}/doc/libspx-base-dev)
  set(SPX_PROGRAM_DOCDIR ${CMAKE_INSTALL_DATADIR}/doc/spx)
endif()
set(host_pages ${PROJECT_SOURCE_DIR}/docs/architecture.md ${PROJECT_SOURCE_DIR}/docs/host-guide.md)
file(GLOB program_pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md)
list(REMOVE_ITEM program_pages ${host_pages})
set(project_pages ${PROJECT_SOURCE_DIR}/README.md)
if(NOT SPX_DEBIAN_FILES)
  list(APPEND project_pages ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
endif()
install(FILES ${host_pages} DESTINATION ${SPX_DEVELOPMENT_DOCDIR} COMPONENT development)
install(FILES ${program_pages} ${project_pages} DESTINATION ${SPX_PROGRAM_DOCDIR}
        COMPONENT program)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/host
        DESTINATION ${SPX_DEVELOPMENT_DOCDIR}/examples COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/studbook
        DESTINATION ${SPX_PROGRAM_DOCDIR}/examples COMPONENT program OPTIONAL)

if(SPX_BUILD_CONSOLE)
  include(spx_install_program)
endif()
