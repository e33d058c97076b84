# Installation of both libraries, the component and the headers, found by find_package(Quorl).
include(CMakePackageConfigHelpers)

install(TARGETS quorl_runtime quorl quorl_component EXPORT QuorlTargets FILE_SET HEADERS
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES quorl/quorl.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quorl)
install(FILES docs/quorl.idl docs/quorl.json DESTINATION ${CMAKE_INSTALL_DATADIR}/quorl)
install(EXPORT QuorlTargets NAMESPACE Quorl:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Quorl)

write_basic_package_version_file(QuorlConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES cmake/QuorlConfig.cmake ${PROJECT_BINARY_DIR}/QuorlConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Quorl)

# The component `qt` of the package, where it was built.
if(TARGET quorl_qt)
  install(TARGETS quorl_qt EXPORT QuorlQtTargets FILE_SET HEADERS
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(EXPORT QuorlQtTargets NAMESPACE Quorl:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Quorl)
endif()
