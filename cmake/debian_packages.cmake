# Debian packages, one per component: cpack -G DEB, or the package preset for the folders that Debian uses.
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VENDOR "the korvane authors")
set(CPACK_PACKAGE_CONTACT "the korvane authors <maintainers@korvane.invalid>") # a placeholder: no address exists
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each component's description opens with its own
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian_documents.cmake)

set(runtime_package libkorvane${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# The trigger of ldconfig, and two scripts that do not exist: their names keep CPack from writing its own, which call
# ldconfig instead.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_LIST_DIR}/triggers ${CMAKE_CURRENT_LIST_DIR}/none/postinst ${CMAKE_CURRENT_LIST_DIR}/none/postrm)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "common programming interface of mesh generators
CAD front ends, mesh generators and solvers hand geometry and meshes to one
another through this library: callbacks, mesh files, size maps, statistics and
CAD models.

This package contains the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkorvane-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "common programming interface of mesh generators (development files)
CAD front ends, mesh generators and solvers hand geometry and meshes to one
another through this library: callbacks, mesh files, size maps, statistics and
CAD models.

This package contains the header, which is also the manual, and what CMake and
pkg-config need to find the library.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME korvane-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "describe, judge and convert mesh files
The korvane command tells what is in a mesh file, reports on the quality and
the topology of a mesh, compares it with a size map, and writes it in another
encoding.")

include(CPack)
