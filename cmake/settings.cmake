# Compiler settings of our own targets, and the two helpers with which the root file names rooms.

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

add_library(quorl_settings INTERFACE)
target_compile_features(quorl_settings INTERFACE cxx_std_20 c_std_11)
target_compile_options(quorl_settings INTERFACE -Wall -Wextra -Wconversion -Wshadow
                                                $<$<BOOL:${PROJECT_IS_TOP_LEVEL}>:-Werror>)
# The same source gives the same result on every machine: no contraction into fused operations.
target_compile_options(quorl_settings INTERFACE -ffp-contract=off)
# A function of ours that is shown to hosts is called, or taken in, directly within our own library.
target_compile_options(quorl_settings INTERFACE -fno-semantic-interposition)
# Hardening of our own targets. The linker's part is the folder's, so that it stays with them; a host
# that takes the library into its own build keeps its own.
target_compile_options(quorl_settings INTERFACE -fstack-protector-strong)
if(NOT QUORL_SANITIZE AND NOT QUORL_FUZZ)
  target_compile_options(quorl_settings INTERFACE
      "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)
# Containers are asked within their bounds where the tests watch.
if(QUORL_TESTS)
  target_compile_definitions(quorl_settings INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(QUORL_SANITIZE)
  set(sanitizers address,undefined)
  if(QUORL_SANITIZE STREQUAL THREAD)
    set(sanitizers thread)
    # It does not follow fences, so that an Array which one thread writes after another has let its
    # copy go would look like a race.
    target_compile_options(quorl_settings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-tsan>)
  endif()
  target_compile_options(quorl_settings INTERFACE -fsanitize=${sanitizers} -fno-sanitize-recover=all
                                                  -fno-omit-frame-pointer)
  target_link_options(quorl_settings INTERFACE -fsanitize=${sanitizers})
endif()
if(QUORL_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES Clang)
    message(FATAL_ERROR "QUORL_FUZZ needs clang++ and its fuzzer runtime")
  endif()
  target_compile_options(quorl_settings INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                  -fno-sanitize-recover=all)
  target_link_options(quorl_settings INTERFACE -fsanitize=address,undefined)
endif()

if((QUORL_SANITIZE OR QUORL_FUZZ) AND CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # Hosts call a slot by its C type, in which the object has its class's name.
  target_compile_options(quorl_settings INTERFACE -fno-sanitize=function)
endif()

# What is not marked QUORL_API is hidden in the shared libraries.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Every source of the named rooms. A new file is seen at the next build.
function(quorl_room_sources result)
  set(found)
  foreach(room ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/quorl/${room}/*.cpp
                                        ${PROJECT_SOURCE_DIR}/quorl/${room}/internal/*.cpp)
    list(APPEND found ${sources})
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# The doors of the named rooms: the headers beside `internal`, found under the repository's root and
# installed as a file set.
function(quorl_doors target)
  set(found)
  foreach(room ${ARGN})
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/quorl/${room}/*.hpp
                                        ${PROJECT_SOURCE_DIR}/quorl/${room}/*.h)
    list(APPEND found ${headers})
  endforeach()
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${found})
  target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()
