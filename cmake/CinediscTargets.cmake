# How a folder becomes a target. A folder's sources are all its .cpp files (not those of its sub-folders).

set(CINEDISC_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)

function(cinedisc_settings target)
  target_compile_options(${target} PRIVATE ${CINEDISC_WARNINGS})
  if(CINEDISC_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(CINEDISC_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                             -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
  target_compile_definitions(${target} PRIVATE QT_NO_FOREACH)
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  # A header that is new in the folder must make the meta-object step run again; ninja does not see that by itself.
  get_target_property(sources ${target} SOURCES)
  set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}_sources.txt)
  set(known "")
  if(EXISTS ${list})
    file(READ ${list} known)
  endif()
  if(NOT known STREQUAL sources)
    file(WRITE ${list} "${sources}")
    file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
  endif()
endfunction()

# cinedisc_library(NAME <libraries it may use>...)
function(cinedisc_library name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARGN})
  cinedisc_settings(${name})
endfunction()

# cinedisc_test(FOLDER <libraries>...): tests/FOLDER becomes the test program test_FOLDER.
function(cinedisc_test folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${folder} ${sources})
  target_link_libraries(test_${folder} PRIVATE ${ARGN} test_support)
  cinedisc_settings(test_${folder})
  add_test(NAME ${folder} COMMAND test_${folder})
  set_tests_properties(${folder} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;CINEDISC_SAMPLES=${CINEDISC_SAMPLES}"
                       TIMEOUT 600)
endfunction()
