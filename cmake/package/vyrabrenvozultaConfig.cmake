# find_package(vyrabrenvozulta 1.0 REQUIRED), with CMAKE_PREFIX_PATH naming the unpacked folder, gives
#   vyra::vyrabrenvozulta   the library, linked by the import library of the compiler's ABI
#   vyra::headers           the headers alone, for hosts that load the library at run time (vyra/loader.h)
#   vyra::simulator         the control interface of the simulated driver library, for tests of hosts
#   vyra_run_with_simulator(TARGET)   puts both DLLs beside the program, so that it runs without a scanner
if(NOT WIN32 OR NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(vyrabrenvozulta_FOUND FALSE)
  set(vyrabrenvozulta_NOT_FOUND_MESSAGE "vyrabrenvozulta is a library for 64-bit Windows programs")
  return()
endif()

get_filename_component(_vyra_root "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
if(MSVC OR CMAKE_C_SIMULATE_ID STREQUAL "MSVC" OR CMAKE_CXX_SIMULATE_ID STREQUAL "MSVC")
  set(_vyra_import_library "${_vyra_root}/lib/msvc/@.lib")
else()
  set(_vyra_import_library "${_vyra_root}/lib/mingw/lib@.dll.a")
endif()

if(NOT TARGET vyra::headers)
  add_library(vyra::headers INTERFACE IMPORTED)
  set_target_properties(vyra::headers PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${_vyra_root}/include")
  foreach(_vyra_target IN ITEMS vyrabrenvozulta/bin/vyrabrenvozulta simulator/simulator/BrenvoZulta_USB)
    string(REGEX MATCH "^([^/]+)/(.+/([^/]+))$" _vyra_target "${_vyra_target}")
    string(REPLACE "@" "${CMAKE_MATCH_3}" _vyra_library "${_vyra_import_library}")
    add_library(vyra::${CMAKE_MATCH_1} SHARED IMPORTED)
    set_target_properties(vyra::${CMAKE_MATCH_1} PROPERTIES
      IMPORTED_LOCATION "${_vyra_root}/${CMAKE_MATCH_2}.dll"
      IMPORTED_IMPLIB "${_vyra_library}"
      INTERFACE_LINK_LIBRARIES vyra::headers)
  endforeach()
endif()

function(vyra_run_with_simulator TARGET)
  add_custom_command(TARGET ${TARGET} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:vyra::vyrabrenvozulta> $<TARGET_FILE:vyra::simulator>
            $<TARGET_FILE_DIR:${TARGET}>
    VERBATIM)
endfunction()

unset(_vyra_root)
unset(_vyra_import_library)
unset(_vyra_target)
unset(_vyra_library)
