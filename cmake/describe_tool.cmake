# Runs after the tool is built: its manual page and completions, out of its own texts of help.
#   cmake -D TOOL=... -D DIRECTORY=... -P describe_tool.cmake
function(describe file)
  execute_process(COMMAND ${TOOL} ${ARGN} OUTPUT_FILE ${DIRECTORY}/${file} ERROR_QUIET RESULT_VARIABLE failed)
  if(failed)
    file(REMOVE ${DIRECTORY}/${file})
  endif()
endfunction()

file(MAKE_DIRECTORY ${DIRECTORY})
describe(qv.1 man)
describe(qv completion bash)
describe(_qv completion zsh)
find_program(gzip gzip)
if(gzip AND EXISTS ${DIRECTORY}/qv.1)
  execute_process(COMMAND ${gzip} -9nc ${DIRECTORY}/qv.1 OUTPUT_FILE ${DIRECTORY}/qv.1.gz)
endif()
