# The installed interface for data source developers: a CMake package (find_package(VmxUI)), a
# pkg-config file (vmxui), the guides, and a Debian package of the whole (make deb).
include(CMakePackageConfigHelpers)

# The interface revision, read from the header so that it is written down once.
file(STRINGS ${PROJECT_SOURCE_DIR}/src/core/VmxUI.h revisionLine REGEX "^#define VMXUI_INTERFACE_REVISION ")
string(REGEX REPLACE ".* ([0-9]+)$" "\\1" VMXUI_INTERFACE_REVISION "${revisionLine}")

set(VMXUI_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/VmxUI)
install(EXPORT VmxUITargets NAMESPACE VmxUI:: DESTINATION ${VMXUI_INSTALL_CMAKEDIR})
configure_package_config_file(cmake/VmxUIConfig.cmake.in ${CMAKE_BINARY_DIR}/VmxUIConfig.cmake
    INSTALL_DESTINATION ${VMXUI_INSTALL_CMAKEDIR} PATH_VARS VMXUI_INSTALL_BUNDLEDIR)
# 0.x: a new minor version may change the interface.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VmxUIConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/VmxUIConfig.cmake ${CMAKE_BINARY_DIR}/VmxUIConfigVersion.cmake
    DESTINATION ${VMXUI_INSTALL_CMAKEDIR})

# pkg-config files hold absolute paths: written when installing, for the prefix installed to
# (cmake --install --prefix, or /usr inside the Debian package).
install(CODE "
    set(VMXUI_PC_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
    set(CMAKE_INSTALL_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\")
    set(CMAKE_INSTALL_INCLUDEDIR \"${CMAKE_INSTALL_INCLUDEDIR}\")
    set(VMXUI_INSTALL_BUNDLEDIR \"${VMXUI_INSTALL_BUNDLEDIR}\")
    set(VMXUI_INTERFACE_REVISION \"${VMXUI_INTERFACE_REVISION}\")
    set(PROJECT_VERSION \"${PROJECT_VERSION}\")
    set(pc \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig/vmxui.pc\")
    message(STATUS \"Installing: \${pc}\")
    configure_file(\"${PROJECT_SOURCE_DIR}/cmake/vmxui.pc.in\" \"\${pc}\" @ONLY)
    list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${pc}\")")

set(VMXUI_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/vmxui)
install(FILES docs/INTEGRATING.md docs/ARCHITECTURE.md docs/SANE.md DESTINATION ${VMXUI_INSTALL_DOCDIR})
install(DIRECTORY tests/consumer/ DESTINATION ${VMXUI_INSTALL_DOCDIR}/examples/consumer)

# make deb: one package with the module, the toolkit, the headers and the sample data source. The
# package is made of what is built (make deb builds first): packing never starts a build of its
# own, which a test packing while others run must not.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vmxui)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "VmxUI developers <vmxui@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "scan-settings dialog module for TWAIN data sources")
set(CPACK_PACKAGE_DESCRIPTION "The settings dialog, message boxes, continue-scan question and \
progress panel of a document scanner's TWAIN data source, as a loadable module, with its \
interface headers, the data sources' bitmap and log toolkit, and a sample data source that drives \
a simulated scanner or a SANE device.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
# The runtime libraries come from the binaries themselves (dpkg-shlibdeps); the toolkit gets a
# shlibs file, and ldconfig runs after install and removal.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
include(CPack)
