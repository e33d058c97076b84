# The Debian packages that `cmake --workflow --preset package` makes, one or several components each.
set(CPACK_PACKAGE_CONTACT "The Quorl authors <quorl@example.org>")
set(CPACK_PACKAGE_VENDOR "The Quorl authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/compress_documents.cmake)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The programs need the library that is built beside them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})

# What each package says of licence and changes, from the files at the root.
file(READ LICENSE text)
string(REGEX REPLACE "^[^\n]*\n\n[^\n]*\n\n" "" text "${text}")
string(STRIP "${text}" text)
string(REPLACE "\n\n" "\n.\n" text "${text}")
string(REPLACE "\n" "\n " quorl_licence " ${text}")
file(STRINGS CHANGELOG.md release REGEX "^## " LIMIT_COUNT 1)
string(REGEX REPLACE "^.*, " "" release "${release}")
execute_process(COMMAND date --utc --rfc-email --date=${release} OUTPUT_VARIABLE quorl_release_date
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(debian ${PROJECT_BINARY_DIR}/debian)
foreach(name copyright changelog shlibs)
  configure_file(packaging/debian/${name}.in ${debian}/${name} @ONLY)
endforeach()
file(COPY packaging/debian/triggers packaging/debian/postinst packaging/debian/prerm
     DESTINATION ${debian})

# quorl_package(GROUP NAME SECTION SUMMARY DESCRIPTION COMPONENT...)
function(quorl_package group name section summary description)
  string(TOUPPER ${group} id)
  foreach(component ${ARGN})
    string(TOUPPER ${component} part)
    set(CPACK_COMPONENT_${part}_GROUP ${group} PARENT_SCOPE)
  endforeach()
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${ARGN} PARENT_SCOPE)
  list(GET ARGN 0 component)
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${name})
  install(FILES ${debian}/copyright ${debian}/changelog DESTINATION ${documents}
          COMPONENT ${component})
  if(EXISTS ${PROJECT_SOURCE_DIR}/packaging/debian/${name}.lintian-overrides)
    install(FILES packaging/debian/${name}.lintian-overrides RENAME ${name}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
  endif()
  set(CPACK_DEBIAN_${id}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${id}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${id}_DESCRIPTION "${summary}\n${about}\n${description}" PARENT_SCOPE)
endfunction()

set(library libquorl${PROJECT_VERSION_MAJOR})
set(exactly "(= ${PROJECT_VERSION})")
set(about "Quorl writes amounts in words, rounds, handles texts and database fields,
and keeps settings.")

quorl_package(library ${library} libs "utility library for desktop business applications"
              "This package has the libraries and lets the hosts of every user find\nthe classes." library classes)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${debian}/triggers ${debian}/shlibs)
install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${library} COMPONENT library)

quorl_package(programs quorl utils "amounts in words and settings on the command line"
              "This package has the programs quorl-amounts and quorl-settings." programs)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS "${library} ${exactly}")

quorl_package(development libquorl-dev libdevel "utility library for business applications - development"
              "This package is for building hosts in C and C++." development)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} ${exactly}")

if(TARGET quorl_qt)
  quorl_package(qt libquorl-qt-dev libdevel "utility library for business applications - Qt 6"
                "This package makes windows, combo boxes and SQL records of Qt 6 its\nhost objects." qt)
  set(CPACK_DEBIAN_QT_PACKAGE_DEPENDS "libquorl-dev ${exactly}, qt6-base-dev (>= 6.4)")
endif()

# The modules that pip would install, without the list of files that is pip's own.
find_program(python3 python3 REQUIRED)
install(CODE "execute_process(COMMAND ${python3} -B -c
  \"import build_package; print(build_package.build_wheel('${PROJECT_BINARY_DIR}'), end='')\"
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}/python/backend OUTPUT_VARIABLE wheel
  COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE_RECURSE ${PROJECT_BINARY_DIR}/wheel)
file(ARCHIVE_EXTRACT INPUT ${PROJECT_BINARY_DIR}/\${wheel} DESTINATION ${PROJECT_BINARY_DIR}/wheel)"
        COMPONENT python)
install(DIRECTORY ${PROJECT_BINARY_DIR}/wheel/ DESTINATION lib/python3/dist-packages
        COMPONENT python PATTERN RECORD EXCLUDE)
quorl_package(python python3-quorl python "utility library for desktop business applications - Python 3"
              "This package has its classes as Python's." python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3 (>= 3.9), ${library} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA ${debian}/postinst ${debian}/prerm)

include(CPack)
