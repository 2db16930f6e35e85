# How others find the installed library: the CMake package (find_package(korvane), target korvane::korvane) and
# korvane.pc. Both work wherever the prefix is moved to.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/korvane)
install(EXPORT korvane_targets FILE korvane-targets.cmake NAMESPACE korvane::
    DESTINATION ${package_folder} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/korvane-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/korvane-config.cmake ${PROJECT_BINARY_DIR}/korvane-config-version.cmake
    DESTINATION ${package_folder} COMPONENT development)

# An absolute folder is stated as it is, a relative one from the prefix, and that from the folder of korvane.pc.
file(RELATIVE_PATH prefix_from_pc_folder
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
foreach(kind LIBDIR INCLUDEDIR)
    set(pc_${kind} ${CMAKE_INSTALL_${kind}})
    cmake_path(ABSOLUTE_PATH pc_${kind} BASE_DIRECTORY "\${prefix}")
endforeach()
configure_file(${CMAKE_CURRENT_LIST_DIR}/korvane.pc.in ${PROJECT_BINARY_DIR}/korvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/korvane.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
