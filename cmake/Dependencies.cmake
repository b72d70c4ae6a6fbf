# Every library the project uses, in one place. README.md says why each is there.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets)
find_package(Threads REQUIRED)
find_package(JPEG REQUIRED)
find_package(ZLIB REQUIRED)
find_package(LibXml2 REQUIRED)

if(WIN32)
  # The parser's start and end touch parts that nothing here uses (schemas, XPath, HTML): half a megabyte of a static program.
  # A call that has nothing left to do takes their place.
  foreach(unused xmlRelaxNGCleanupTypes xmlSchemaCleanupTypes xmlXPathInit htmlInitAutoClose)
    set_property(TARGET LibXml2::LibXml2 APPEND PROPERTY INTERFACE_LINK_OPTIONS -Wl,--defsym,${unused}=xmlInitMemory)
  endforeach()
endif()

# DCMTK's own CMake package names targets that Debian does not ship; its libraries are found by name instead.
find_path(DCMTK_INCLUDE dcmtk/dcmdata/dctk.h REQUIRED)
add_library(cinedisc_dcmtk INTERFACE)
target_include_directories(cinedisc_dcmtk SYSTEM INTERFACE ${DCMTK_INCLUDE})
foreach(name dcmjpls dcmjpeg dcmimage dcmimgle dcmdata oflog ofstd)
  find_library(DCMTK_${name} ${name} REQUIRED)
  target_link_libraries(cinedisc_dcmtk INTERFACE ${DCMTK_${name}})
endforeach()
if(WIN32)
  # Static libraries do not say what they need.
  foreach(name dcmtkcharls ijg8 ijg12 ijg16 oflog ofstd)
    find_library(DCMTK_${name} ${name} REQUIRED)
    target_link_libraries(cinedisc_dcmtk INTERFACE ${DCMTK_${name}})
  endforeach()
  target_link_libraries(cinedisc_dcmtk INTERFACE iphlpapi ws2_32 netapi32 wsock32)
endif()
target_link_libraries(cinedisc_dcmtk INTERFACE ZLIB::ZLIB Threads::Threads)

# OpenJPEG's CMake package refuses to load when its command-line tools are not installed.
find_path(OPENJPEG_INCLUDE openjpeg.h PATH_SUFFIXES openjpeg-2.5 REQUIRED)
find_library(OPENJPEG_LIBRARY openjp2 REQUIRED)
add_library(cinedisc_openjpeg INTERFACE)
target_include_directories(cinedisc_openjpeg SYSTEM INTERFACE ${OPENJPEG_INCLUDE})
target_link_libraries(cinedisc_openjpeg INTERFACE ${OPENJPEG_LIBRARY})
