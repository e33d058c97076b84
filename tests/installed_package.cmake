# Installs BINARY_DIR, compares what it shows with the list of doors, builds the consumer against it
# and compares what that prints.
foreach(name BINARY_DIR SOURCE_DIR GENERATOR)
  if(NOT DEFINED ${name})
    message(FATAL_ERROR "${name} is not given")
  endif()
endforeach()
set(work ${BINARY_DIR}/installed_package)
file(REMOVE_RECURSE ${work})

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE code)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "${ARGN} failed:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${work}/prefix)
run(${SOURCE_DIR}/tests/doors.sh ${work}/prefix/include ${BINARY_DIR}/libquorl_runtime.so
    ${BINARY_DIR}/libquorl.so)
file(READ ${SOURCE_DIR}/tests/doors.txt doors)
if(NOT output STREQUAL doors)
  file(WRITE ${work}/doors.txt "${output}")
  execute_process(COMMAND diff ${SOURCE_DIR}/tests/doors.txt ${work}/doors.txt)
  message(FATAL_ERROR "the headers or exported names are not those of tests/doors.txt")
endif()
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${SOURCE_DIR}/tests/consumer -B ${work}/build
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH=${work}/prefix)
run(${CMAKE_COMMAND} --build ${work}/build)
run(${work}/build/consumer)
if(NOT output MATCHES "^un million d'euros quatre-vingts cents\n1.01\nJean Dupont\n")
  message(FATAL_ERROR "the consumer prints:\n${output}")
endif()
