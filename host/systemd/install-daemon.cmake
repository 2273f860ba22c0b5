if(CMAKE_INSTALL_PREFIX STREQUAL /usr)
    set(confdir /etc/ruk)
else()
    set(confdir ${CMAKE_INSTALL_PREFIX}/etc/ruk)
endif()
configure_file(
    ${CMAKE_CURRENT_LIST_DIR}/ruk-chassisd.service.in ${workdir}/ruk-chassisd.service @ONLY)
file(INSTALL ${workdir}/ruk-chassisd.service
    DESTINATION ${CMAKE_INSTALL_PREFIX}/lib/systemd/system)
file(INSTALL ${CMAKE_CURRENT_LIST_DIR}/chassis.toml DESTINATION ${confdir})
