configure_file(
    ${CMAKE_CURRENT_LIST_DIR}/ruk-ipmi-exporter.service.in ${workdir}/ruk-ipmi-exporter.service
    @ONLY)
file(INSTALL ${workdir}/ruk-ipmi-exporter.service
    DESTINATION ${CMAKE_INSTALL_PREFIX}/lib/systemd/system)
