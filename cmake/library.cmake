# The library's rooms, the lowest floor first, a line for each floor. Nothing includes a header of a floor
# above its own; scripts/house.sh reads the floors from here and checks it.
set(qv_rooms
  platform
  core
  kernels
  dates
  indicators patterns finance pnf
  datafiles tradesim
  catalogue
  formula stream
  charting)

# The sources are compiled once, as objects: the shared library and the library that the
# tests link (which can reach hidden symbols) are made of the same objects.
set(qv_sources)
foreach(room IN LISTS qv_rooms)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/src/${room}/*.cpp)
  list(APPEND qv_sources ${found})
endforeach()
# `platform` has one source for each operating system.
if(WIN32)
  list(REMOVE_ITEM qv_sources ${CMAKE_CURRENT_SOURCE_DIR}/src/platform/posix.cpp)
else()
  list(REMOVE_ITEM qv_sources ${CMAKE_CURRENT_SOURCE_DIR}/src/platform/win32.cpp)
endif()
# The heap door is compiled a second time for the tests, with the switch that makes the
# k-th allocation fail.
set(qv_heap ${CMAKE_CURRENT_SOURCE_DIR}/src/core/memory.cpp)
list(REMOVE_ITEM qv_sources ${qv_heap})

add_library(qvlib60_options INTERFACE)
target_include_directories(qvlib60_options INTERFACE
  ${CMAKE_CURRENT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR}/include)
# Contraction off: the same input gives the same bits on every x86-64 machine. errno is never
# read after a mathematical function, and without it square roots become vector code; nor are the
# floating-point exception flags, and without them a choice beside a division does.
target_compile_options(qvlib60_options INTERFACE
  -ffp-contract=off -fno-math-errno -fno-trapping-math
  $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti>)
target_compile_definitions(qvlib60_options INTERFACE QVLIB60_BUILD)

add_library(qvlib60_objects OBJECT ${qv_sources})
target_link_libraries(qvlib60_objects PRIVATE qvlib60_options qv_warnings)
set_target_properties(qvlib60_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)

add_library(QVLIB60 SHARED $<TARGET_OBJECTS:qvlib60_objects> ${qv_heap})
target_link_libraries(QVLIB60 PRIVATE qvlib60_options qv_warnings)
target_include_directories(QVLIB60 INTERFACE ${CMAKE_CURRENT_SOURCE_DIR}/include)
set_target_properties(QVLIB60 PROPERTIES
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
# For projects that take this one in by add_subdirectory: they link the same name as with a package.
add_library(QVLIB60::QVLIB60 ALIAS QVLIB60)
if(WIN32)
  include(cmake/windows_exports.cmake)
else()
  # Calls between exported functions of the library bind inside it.
  target_link_options(QVLIB60 PRIVATE -Wl,-Bsymbolic-functions)
  if(NOT QV_SANITIZE)
    target_link_options(QVLIB60 PRIVATE -Wl,--no-undefined)
  endif()
endif()

if(QV_BUILD_TESTS)
  add_library(qvlib60_testable STATIC $<TARGET_OBJECTS:qvlib60_objects> ${qv_heap})
  target_link_libraries(qvlib60_testable PRIVATE qvlib60_options qv_warnings)
  target_compile_definitions(qvlib60_testable PUBLIC QV_ALLOCATION_FAULTS)
  target_include_directories(qvlib60_testable PUBLIC
    ${CMAKE_CURRENT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR}/include)
endif()

if(QV_INSTALL)
  install(TARGETS QVLIB60)
  install(FILES include/qvlib60.h include/qvlib60.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(DIRECTORY include/qvlib60 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()
