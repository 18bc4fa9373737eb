# Makes the import library of a DLL whose exports are undecorated: callers ask for qvName@8, the DLL has qvName.
execute_process(COMMAND ${NM} ${DLL} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL " T _qv[A-Za-z0-9_]+@[0-9]+" functions "${symbols}")
list(TRANSFORM functions REPLACE " T _" "  ")
list(JOIN functions "\n" functions)
get_filename_component(name ${DLL} NAME)
file(WRITE ${LIBRARY}.def "LIBRARY ${name}\nEXPORTS\n${functions}\n")
execute_process(COMMAND ${DLLTOOL} --kill-at --dllname ${name} --input-def ${LIBRARY}.def --output-lib ${LIBRARY}
  COMMAND_ERROR_IS_FATAL ANY)
