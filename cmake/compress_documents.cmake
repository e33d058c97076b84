# What Debian keeps compressed, in the folders that are about to be packed.
file(GLOB_RECURSE documents ${CPACK_TEMPORARY_DIRECTORY}/quorl-*.1
                            ${CPACK_TEMPORARY_DIRECTORY}/changelog)
execute_process(COMMAND gzip --best --no-name --force ${documents} COMMAND_ERROR_IS_FATAL ANY)
