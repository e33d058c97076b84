# Installation of both libraries, the component and the headers, found by find_package(Quorl).
include(CMakePackageConfigHelpers)

install(TARGETS quorl_runtime quorl quorl_component EXPORT QuorlTargets FILE_SET HEADERS
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES quorl/quorl.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quorl)
install(FILES docs/quorl.idl docs/quorl.json DESTINATION ${CMAKE_INSTALL_DATADIR}/quorl)
install(EXPORT QuorlTargets NAMESPACE Quorl:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Quorl)

write_basic_package_version_file(QuorlConfigVersion.cmake COMPATIBILITY SameMajorVersion)
file(WRITE ${PROJECT_BINARY_DIR}/QuorlConfig.cmake
     "include(\${CMAKE_CURRENT_LIST_DIR}/QuorlTargets.cmake)\n")
install(FILES ${PROJECT_BINARY_DIR}/QuorlConfig.cmake ${PROJECT_BINARY_DIR}/QuorlConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Quorl)
