# What `cmake --install` and the Debian packages hold: the library, what programs need to build against it, and the
# command with its manual page and completion.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS orvmesh EXPORT OrvMeshTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/orvmesh DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        COMPONENT development FILES_MATCHING PATTERN "*.h")

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/OrvMesh)
install(EXPORT OrvMeshTargets NAMESPACE OrvMesh:: DESTINATION ${package_directory} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/OrvMeshConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/OrvMeshConfig.cmake INSTALL_DESTINATION ${package_directory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvMeshConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrvMeshConfig.cmake ${PROJECT_BINARY_DIR}/OrvMeshConfigVersion.cmake
        DESTINATION ${package_directory} COMPONENT development)

# From the place of the file itself, so that an installed tree can be moved.
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/orvmesh.pc.in ${PROJECT_BINARY_DIR}/orvmesh.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvmesh.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# Both are printed by the command from the table that --help is made of.
set(manual ${PROJECT_BINARY_DIR}/orvmesh.1)
set(completion ${PROJECT_BINARY_DIR}/orvmesh.bash)
add_custom_command(OUTPUT ${manual} ${completion} COMMAND orvmesh_cli --manual > ${manual}
                   COMMAND orvmesh_cli --completion > ${completion} DEPENDS orvmesh_cli VERBATIM)
add_custom_target(orvmesh_manual ALL DEPENDS ${manual} ${completion})
install(TARGETS orvmesh_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
install(FILES ${manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
install(FILES ${completion} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME orvmesh
        COMPONENT tools)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "orvmesh developers <orvmesh@localhost>")
set(CPACK_PACKAGE_VENDOR orvmesh)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "mesh format transfer for mold-cooling analysis")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL library development tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME liborvmesh${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborvmesh-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "liborvmesh${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME orvmesh)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION science)
if(ORVMESH_BUILD_PYTHON)
  list(APPEND CPACK_COMPONENTS_ALL python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-orvmesh)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  # The module is for one version of the interpreter.
  math(EXPR next_minor "${Python_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
      "python3 (>= 3.${Python_VERSION_MINOR}), python3 (<< 3.${next_minor}), python3-numpy")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-meshio, python3-matplotlib, paraview")
endif()
include(CPack)
