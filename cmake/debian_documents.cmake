# Run by cpack over the files of each component before they are packed: adds what a Debian package has to document, and
# compresses what it has to compress.
if(NOT CPACK_GENERATOR STREQUAL DEB)
    return()
endif()
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} variable)
    set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
    set(documents ${share}/doc/${CPACK_DEBIAN_${variable}_PACKAGE_NAME})
    configure_file(${CMAKE_CURRENT_LIST_DIR}/debian_copyright ${documents}/copyright COPYONLY)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/debian_changelog.in ${documents}/changelog @ONLY)
    file(GLOB pages ${share}/man/man1/*.1)
    execute_process(COMMAND gzip --best --no-name --force ${documents}/changelog ${pages}
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
