# What `cmake --install` puts where, in three parts: `library` (what programs need to run), `development` (what they
# need to be built: headers, static library, CMake package, pkg-config file) and `tool`.
include(CMakePackageConfigHelpers)

install(TARGETS ${qv_libraries} EXPORT QVLIB60Targets
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

set(qv_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QVLIB60)
install(EXPORT QVLIB60Targets NAMESPACE QVLIB60:: DESTINATION ${qv_cmake_dir} COMPONENT development)
configure_package_config_file(packaging/QVLIB60Config.cmake.in QVLIB60Config.cmake
  INSTALL_DESTINATION ${qv_cmake_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(QVLIB60ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QVLIB60Config.cmake ${CMAKE_CURRENT_BINARY_DIR}/QVLIB60ConfigVersion.cmake
  DESTINATION ${qv_cmake_dir} COMPONENT development)

# The paths in the pkg-config file stand relative to it, so that an unpacked archive works anywhere. pkg-config leaves
# out the compiler's own directories when it knows them by name.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(qv_pkgconfig_prefix /usr)
else()
  file(RELATIVE_PATH qv_pkgconfig_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  string(REGEX REPLACE "/$" "" qv_pkgconfig_prefix "\${pcfiledir}/${qv_pkgconfig_prefix}")
endif()
configure_file(packaging/qvlib60.pc.in qvlib60.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qvlib60.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

if(QV_BUILD_TOOL)
  install(DIRECTORY data DESTINATION ${CMAKE_INSTALL_DATADIR}/qvlib60 COMPONENT tool)
endif()

include(cmake/packages.cmake)
