# What is installed for those who build programs of their own: a CMake package and pkg-config files,
# beside the targets' own install rules.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(RUK_IPMI_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ruk_ipmi)
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/ruk_ipmiConfig.cmake.in ${PROJECT_BINARY_DIR}/ruk_ipmiConfig.cmake
    INSTALL_DESTINATION ${RUK_IPMI_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ruk_ipmiConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/ruk_ipmiConfig.cmake ${PROJECT_BINARY_DIR}/ruk_ipmiConfigVersion.cmake
    DESTINATION ${RUK_IPMI_CMAKE_DIR} COMPONENT development)
install(EXPORT ruk_ipmiTargets NAMESPACE ruk_ipmi::
    DESTINATION ${RUK_IPMI_CMAKE_DIR} COMPONENT development)

# A pkg-config file finds the rest from where it lies, so that the tree can be moved.
set(pkg_config_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkg_config /prefix/${pkg_config_dir} /prefix)

# Installs <name>.pc, made of cmake/pkg-config/<name>.pc.in.
function(install_pkg_config name)
    configure_file(
        ${PROJECT_SOURCE_DIR}/cmake/pkg-config/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
        DESTINATION ${pkg_config_dir} COMPONENT development)
endfunction()
