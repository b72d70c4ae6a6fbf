# How a folder becomes a target. Each folder lists its .cpp files, in alphabetical order, and under META_OBJECTS the
# headers that say Q_OBJECT.

set(CINEDISC_WARNINGS -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # Files are compiled in batches: what one calls its own must not matter to the locals of the next.
  list(APPEND CINEDISC_WARNINGS -Wshadow=local)
  if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # This compiler sees an overlap in every "letters" + std::string that it inlines.
    list(APPEND CINEDISC_WARNINGS -Wno-restrict)
  endif()
endif()

if(WIN32)
  # The linker then leaves out what nothing uses.
  add_compile_options(-ffunction-sections -fdata-sections)
endif()

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
  if(WIN32 AND NOT target MATCHES "codecs|pipeline|angiogram")
    # A program on a disc starts the sooner the smaller it is; what works on pixels stays quick.
    target_compile_options(${target} PRIVATE -Os)
  endif()
  target_compile_definitions(${target} PRIVATE QT_NO_FOREACH)
endfunction()

# A file of this folder that the list forgets would be missed late, a test never: it ends the configuring.
function(cinedisc_all_listed)
  file(GLOB forgotten RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} *.cpp)
  list(REMOVE_ITEM forgotten ${ARGN})
  if(forgotten)
    message(FATAL_ERROR "Not listed in ${CMAKE_CURRENT_LIST_FILE}: ${forgotten}")
  endif()
endfunction()

# cinedisc_library(NAME SOURCES ... [META_OBJECTS ...] [LIBRARIES <libraries it may use>...])
function(cinedisc_library name)
  cmake_parse_arguments(LIBRARY "" "" "SOURCES;META_OBJECTS;LIBRARIES" ${ARGN})
  cinedisc_all_listed(${LIBRARY_SOURCES})
  qt_wrap_cpp(meta_objects ${LIBRARY_META_OBJECTS})
  add_library(${name} STATIC ${LIBRARY_SOURCES} ${meta_objects})
  if(meta_objects)
    # As a target that uses no library, too: they would wait for this one's libraries otherwise, and its files for them.
    add_custom_target(${name}_meta_objects DEPENDS ${meta_objects})
  endif()
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${LIBRARY_LIBRARIES})
  cinedisc_settings(${name})
endfunction()

# cinedisc_test(NAME SOURCES ... LIBRARIES ...): the folder becomes the test program test_NAME.
function(cinedisc_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LIBRARIES" ${ARGN})
  cinedisc_all_listed(${TEST_SOURCES})
  add_executable(test_${name} ${TEST_SOURCES})
  target_link_libraries(test_${name} PRIVATE ${TEST_LIBRARIES} test_support)
  cinedisc_settings(test_${name})
  if(WIN32)
    target_link_options(test_${name} PRIVATE -Wl,--gc-sections -s)
    qt_import_plugins(test_${name} INCLUDE_BY_TYPE platforms Qt6::QOffscreenIntegrationPlugin)
  endif()
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;CINEDISC_SAMPLES=${CINEDISC_SAMPLES}"
                       TIMEOUT 600)
endfunction()

# cinedisc_program(NAME DESCRIPTION): what an executable that people get has besides its code; it is installed.
function(cinedisc_program name description)
  cinedisc_settings(${name})
  if(UNIX)
    # What a program looks for beside itself lies there, too; people call it by a link.
    install(TARGETS ${name} RUNTIME DESTINATION lib/cinedisc)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/links)
    file(CREATE_LINK ../lib/cinedisc/${name} ${CMAKE_BINARY_DIR}/links/${name} SYMBOLIC)
    install(FILES ${CMAKE_BINARY_DIR}/links/${name} DESTINATION bin)
  else()
    install(TARGETS ${name} RUNTIME DESTINATION bin)
  endif()
  if(WIN32)
    set(PROGRAM_NAME ${name})
    set(PROGRAM_DESCRIPTION ${description})
    configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/program.rc.in ${name}.rc @ONLY)
    enable_language(RC)
    target_sources(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${name}.rc PROPERTIES OBJECT_DEPENDS
      "${CMAKE_SOURCE_DIR}/packaging/windows/program.manifest;${CMAKE_SOURCE_DIR}/packaging/windows/cinedisc.ico")
    target_link_options(${name} PRIVATE -Wl,--gc-sections -s)
  endif()
endfunction()
