# Fails when an object of ARCHIVES has a variable of which each thread has its own: on Windows its memory is taken at the
# first use, which faults when there is none, and its index is never given back when the library is unloaded.
string(REPLACE "," ";" archives "${ARCHIVES}")
foreach(archive IN LISTS archives)
  execute_process(COMMAND ${OBJDUMP} -t ${archive} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]*(\\.tbss|\\.tdata|__emutls_[vt])[^\n]*" found "${symbols}")
  if(NOT symbols MATCHES "vyra_error_text|notifier_window_proc")
    message(FATAL_ERROR "${archive}: not the library's objects")
  endif()
  if(found)
    list(JOIN found "\n" lines)
    message(FATAL_ERROR "${archive} has variables of which each thread has its own:\n${lines}")
  endif()
endforeach()
