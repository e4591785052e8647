# cmake -D COMMAND=... -D CODE=... -D OUTPUT=... -P judge.cmake: runs a program that must end with this code and whose
# output must match every one of these expressions.
execute_process(COMMAND ${COMMAND} RESULT_VARIABLE code OUTPUT_VARIABLE output ERROR_VARIABLE output)
message("${output}")
if(NOT code STREQUAL CODE)
  message(FATAL_ERROR "it ended with ${code}, expected ${CODE}")
endif()
foreach(expression IN LISTS OUTPUT)
  if(NOT output MATCHES "${expression}")
    message(FATAL_ERROR "it did not say: ${expression}")
  endif()
endforeach()
