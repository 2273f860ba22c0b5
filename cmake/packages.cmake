# The Debian packages, one for each component; `make packages` leaves them in build/packages.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The libruk_ipmi maintainers")
set(CPACK_PACKAGE_VENDOR ${CPACK_PACKAGE_CONTACT})
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/strip-archives.cmake)
set(CPACK_SET_DESTDIR ON) # /etc is outside the prefix
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_COMPONENTS_ALL library development)
if(RUK_IPMI_HOST)
    list(APPEND CPACK_COMPONENTS_ALL daemon tool)
endif()

# Its number is part of the name, so that two interfaces can be installed side by side.
get_target_property(soversion ruk_ipmi_shared SOVERSION)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libruk-ipmi${soversion})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "IPMI to the blades of a chassis: the library
A plain C function for each operation of a blade's management controller. The
functions of a platform, which carry its requests, are the program's to bring.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libruk-ipmi-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "IPMI to the blades of a chassis: development files
The headers, the static libraries of the client library and of the platform for
ordinary Linux, and files by which CMake and pkg-config find them.")

set(CPACK_DEBIAN_DAEMON_PACKAGE_NAME ruk-chassisd)
set(CPACK_DEBIAN_DAEMON_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_DAEMON_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/host/systemd/conffiles
    ${PROJECT_SOURCE_DIR}/host/systemd/postinst
    ${PROJECT_SOURCE_DIR}/host/systemd/prerm)
set(CPACK_COMPONENT_DAEMON_DESCRIPTION "IPMI to the blades of a chassis: the daemon
Serves the blades of a chassis to the IPMI clients of its machine: simulated
ones, and real ones whose controllers are reached over RMCP+.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ruk-ipmi)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION admin)
set(CPACK_COMPONENT_TOOL_DESCRIPTION "IPMI to the blades of a chassis: the command-line tool
Reads and sets whatever the blades of a chassis tell about themselves: event
logs, sensors, inventories, power, users and settings.")

include(CPack)
