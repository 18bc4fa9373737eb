# What `cpack` makes: Debian packages (library, development files, tool), a .tar.gz to unpack anywhere, and a .zip for
# Windows. scripts/package.sh calls it for each.
set(CPACK_PACKAGE_NAME qvlib60)
set(CPACK_PACKAGE_VENDOR "The QVLIB60 developers")
set(CPACK_PACKAGE_CONTACT "The QVLIB60 developers <maintainers@users.noreply.c-seed-783a920d.example>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development)
if(QV_BUILD_TOOL)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

# ---- Debian packages: from a build that is configured for /usr ------------------------------------------------
set(qv_deb_library libqvlib60-${PROJECT_VERSION_MAJOR})
set(qv_deb_development libqvlib60-dev)
set(qv_deb_tool qvlib60-tools)
set(qv_deb_release 1)
# The first line of each description is its summary.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${qv_deb_release})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR})

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${qv_deb_library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "technical-analysis programmer's library
Indicators over price series, bar formations and candlestick patterns, point
and figure, option and bond mathematics, readers of market-data files, and a
bar-by-bar trading-system simulator, behind a flat C interface.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${qv_deb_development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${qv_deb_library} (= ${PROJECT_VERSION}-${qv_deb_release})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "technical-analysis programmer's library (development files)
Headers for C and C++, the static library, and what CMake and pkg-config need
to build programs with QVLIB60.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ${qv_deb_tool})
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION science)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${qv_deb_library} (= ${PROJECT_VERSION}-${qv_deb_release})")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "technical-analysis command-line tool
qv reads price files of several vendors and shows indicators, patterns, point
and figure charts and trading systems over them. Sample prices are included.")

# Debian wants a changelog and the licences in each package.
string(TIMESTAMP qv_deb_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(packaging/debian/changelog.in changelog @ONLY)
find_program(QV_GZIP gzip)
if(QV_GZIP AND CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  execute_process(COMMAND ${QV_GZIP} -9nc ${CMAKE_CURRENT_BINARY_DIR}/changelog
    OUTPUT_FILE ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz)
  foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz packaging/debian/copyright
      DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${qv_deb_${component}} COMPONENT ${component})
    install(FILES packaging/debian/${component}.lintian-overrides
      DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
      RENAME ${qv_deb_${component}} COMPONENT ${component})
  endforeach()
else()
  install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
endif()

include(CPack)
