# Windows: the exported names, and what the file's properties show. The platform's standard calling convention decorates
# names; a .def file made of the declarations in include/ exports them undecorated.
file(GLOB_RECURSE qv_headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/include/qvlib60/*.h)
set(qv_def "LIBRARY QVLIB60\nEXPORTS\n")
foreach(header IN LISTS qv_headers)
  file(STRINGS ${header} lines REGEX "^QVAPI .*QVCALL +qv[A-Za-z0-9_]+\\(")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^.*QVCALL +(qv[A-Za-z0-9_]+)\\(.*$" "\\1" name "${line}")
    string(APPEND qv_def "  ${name}\n")
  endforeach()
endforeach()
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/QVLIB60.def "${qv_def}")
target_sources(QVLIB60 PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/QVLIB60.def)
set_target_properties(QVLIB60 PROPERTIES PREFIX "")
target_link_options(QVLIB60 PRIVATE -static -Wl,--enable-stdcall-fixup)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  # The linker's own import library has the names undecorated, too, and no caller would find them there.
  add_custom_command(TARGET QVLIB60 POST_BUILD VERBATIM COMMAND ${CMAKE_COMMAND} -D NM=${CMAKE_NM}
    -D DLLTOOL=${CMAKE_DLLTOOL} -D DLL=$<TARGET_FILE:QVLIB60> -D LIBRARY=$<TARGET_LINKER_FILE:QVLIB60>
    -P ${CMAKE_CURRENT_SOURCE_DIR}/cmake/import_library.cmake)
endif()

enable_language(RC)
configure_file(packaging/windows/version.rc.in QVLIB60.rc @ONLY)
target_sources(QVLIB60 PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/QVLIB60.rc)
