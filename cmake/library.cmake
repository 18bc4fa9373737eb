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
# `platform` has sources for each operating system.
if(WIN32)
  list(FILTER qv_sources EXCLUDE REGEX "/src/platform/posix[^/]*$")
else()
  list(FILTER qv_sources EXCLUDE REGEX "/src/platform/win32[^/]*$")
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
if(QV_COVERAGE)
  # Unoptimised and without copies of what is inlined, so that a branch of the source is one of the program. The
  # threads of a test count together.
  target_compile_options(qvlib60_options INTERFACE --coverage -fprofile-update=atomic -O0)
  target_compile_definitions(qvlib60_options INTERFACE QV_INLINE=inline)
  add_link_options(--coverage)
endif()

add_library(qvlib60_objects OBJECT ${qv_sources})
target_link_libraries(qvlib60_objects PRIVATE qvlib60_options qv_warnings)
if(QV_BUILD_FUZZ)
  target_compile_options(qvlib60_objects PRIVATE -fsanitize=fuzzer-no-link)
endif()
set_target_properties(qvlib60_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)

add_library(qvlib60_heap OBJECT ${qv_heap})
target_link_libraries(qvlib60_heap PRIVATE qvlib60_options qv_warnings)
set_target_properties(qvlib60_heap PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)

add_library(QVLIB60 SHARED $<TARGET_OBJECTS:qvlib60_objects> $<TARGET_OBJECTS:qvlib60_heap>)
set_target_properties(QVLIB60 PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
set(qv_libraries QVLIB60)
if(QV_BUILD_STATIC)
  add_library(QVLIB60_static STATIC $<TARGET_OBJECTS:qvlib60_objects> $<TARGET_OBJECTS:qvlib60_heap>)
  set_target_properties(QVLIB60_static PROPERTIES OUTPUT_NAME QVLIB60)
  # On Windows callers must not ask for an import.
  target_compile_definitions(QVLIB60_static INTERFACE QVLIB60_STATIC)
  add_library(QVLIB60::QVLIB60_static ALIAS QVLIB60_static)
  list(APPEND qv_libraries QVLIB60_static)
endif()
foreach(library IN LISTS qv_libraries)
  set_target_properties(${library} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${library} INTERFACE
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endforeach()
# For projects that take this one in by add_subdirectory: they link the same name as with a package.
add_library(QVLIB60::QVLIB60 ALIAS QVLIB60)
if(WIN32)
  include(cmake/windows.cmake)
  foreach(library IN LISTS qv_libraries)
    target_link_libraries(${library} PRIVATE gdi32)
  endforeach()
else()
  # Calls between exported functions of the library bind inside it.
  target_link_options(QVLIB60 PRIVATE -Wl,-Bsymbolic-functions)
  if(NOT QV_SANITIZE)
    target_link_options(QVLIB60 PRIVATE -Wl,--no-undefined)
  endif()
endif()

if(QV_BUILD_TESTS OR QV_BUILD_FUZZ)
  add_library(qvlib60_testable STATIC $<TARGET_OBJECTS:qvlib60_objects> ${qv_heap})
  target_link_libraries(qvlib60_testable PRIVATE qvlib60_options qv_warnings)
  target_compile_definitions(qvlib60_testable PUBLIC QV_ALLOCATION_FAULTS)
  target_include_directories(qvlib60_testable PUBLIC
    ${CMAKE_CURRENT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR}/include)
  if(WIN32)
    target_compile_definitions(qvlib60_testable PUBLIC QVLIB60_STATIC)
    target_link_libraries(qvlib60_testable PUBLIC gdi32)
  endif()
endif()
