# Debugging information of static libraries names the machine that they were built on; CPack strips
# only what runs.
file(GLOB_RECURSE archives ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*.a)
execute_process(COMMAND strip --strip-debug --enable-deterministic-archives ${archives}
    COMMAND_ERROR_IS_FATAL ANY)
