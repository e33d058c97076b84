# What an installation lays down, in components: library, development, qt and programs; classes is the
# list with which every user has the classes unregistered, and is installed when it is named alone.
# Nothing that is installed knows where: it can be moved as a whole.
include(CMakePackageConfigHelpers)

set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Quorl)
install(TARGETS quorl_runtime quorl quorl_component EXPORT QuorlTargets
        FILE_SET HEADERS COMPONENT development
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(FILES docs/quorl.classes DESTINATION ${CMAKE_INSTALL_LIBDIR}/quorl RENAME classes
        COMPONENT classes EXCLUDE_FROM_ALL)
install(FILES quorl/quorl.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quorl COMPONENT development)
install(FILES docs/quorl.idl docs/quorl.json DESTINATION ${CMAKE_INSTALL_DATADIR}/quorl
        COMPONENT development)

# For find_package(Quorl) and for pkg-config.
install(EXPORT QuorlTargets NAMESPACE Quorl:: DESTINATION ${cmake_folder} COMPONENT development)
write_basic_package_version_file(QuorlConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES cmake/QuorlConfig.cmake ${PROJECT_BINARY_DIR}/QuorlConfigVersion.cmake
        DESTINATION ${cmake_folder} COMPONENT development)
file(RELATIVE_PATH quorl_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" quorl_prefix ${quorl_prefix})
foreach(name quorl quorl-runtime)
  configure_file(packaging/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development)
endforeach()

# The component `qt` of the package, where it was built.
if(TARGET quorl_qt)
  install(TARGETS quorl_qt EXPORT QuorlQtTargets FILE_SET HEADERS COMPONENT qt
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT qt)
  install(EXPORT QuorlQtTargets NAMESPACE Quorl:: DESTINATION ${cmake_folder} COMPONENT qt)
endif()

# The hosts that are programs for everyone, of the same objects under their installed names.
function(quorl_install_program name host)
  add_executable(${name} $<TARGET_OBJECTS:${host}>)
  file(RELATIVE_PATH libraries /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX INSTALL_RPATH "$ORIGIN/${libraries}"
                        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_BINDIR})
  get_target_property(linked ${host} LINK_LIBRARIES)
  target_link_libraries(${name} PRIVATE ${linked})
  install(TARGETS ${name} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
  install(FILES packaging/${name}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT programs)
  install(FILES packaging/${name}.bash RENAME ${name} COMPONENT programs
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endfunction()
if(QUORL_EXAMPLES)
  quorl_install_program(quorl-amounts amount_in_words)
  quorl_install_program(quorl-settings settings)
  install(FILES examples/invoices.csv DESTINATION ${CMAKE_INSTALL_DATADIR}/quorl COMPONENT programs)
endif()

if(QUORL_PACKAGES)
  include(cmake/packages.cmake)
else()
  install(FILES LICENSE CHANGELOG.md TYPE DOC COMPONENT development)
endif()
