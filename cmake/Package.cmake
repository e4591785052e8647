# What a host developer gets, as an archive for Windows: scripts/package makes it.
#
# The simulator has a folder of its own, so that unpacking never replaces a real driver. The import libraries of the two
# ABIs lie apart: with -static, MinGW's linker would take the other one's.
include(CMakePackageConfigHelpers)

set(package ${CMAKE_CURRENT_BINARY_DIR}/package)
configure_file(cmake/package/vyrabrenvozulta.pc.in ${package}/vyrabrenvozulta.pc @ONLY)
write_basic_package_version_file(${package}/vyrabrenvozultaConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)

# What follows the host developers' part of the README is about the repository.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS README.md)
file(READ README.md readme)
string(FIND "${readme}" "\n## Building it" end)
if(end EQUAL -1)
  message(FATAL_ERROR "README.md: its part for host developers ends where \"## Building it\" begins, which it does not have")
endif()
string(SUBSTRING "${readme}" 0 ${end} readme)
file(WRITE ${package}/README.md "${readme}")

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME sdk)
install(PROGRAMS $<TARGET_FILE:vyrabrenvozulta> $<TARGET_FILE:vyra> DESTINATION bin)
install(PROGRAMS $<TARGET_FILE:BrenvoZulta_USB> DESTINATION simulator)
install(FILES simulator/README.md DESTINATION simulator)
install(DIRECTORY simulator/examples DESTINATION simulator)
install(DIRECTORY include/vyra simulator/include/brenvozulta_simulator DESTINATION include)
foreach(library vyrabrenvozulta BrenvoZulta_USB)
  install(FILES ${VYRA_IMPORT_LIBRARY_DIR}/msvc/${library}.lib DESTINATION lib/msvc)
  install(FILES ${VYRA_IMPORT_LIBRARY_DIR}/mingw/lib${library}.dll.a DESTINATION lib/mingw)
endforeach()
install(FILES ${package}/vyrabrenvozulta.pc DESTINATION lib/mingw/pkgconfig)
install(FILES cmake/package/vyrabrenvozultaConfig.cmake ${package}/vyrabrenvozultaConfigVersion.cmake
  DESTINATION lib/cmake/vyrabrenvozulta)
install(DIRECTORY examples DESTINATION .)
install(DIRECTORY docs DESTINATION . PATTERN architecture.md EXCLUDE PATTERN site EXCLUDE PATTERN drawings EXCLUDE)
install(FILES tools/vyra/README.md DESTINATION tools/vyra)
install(FILES ${package}/README.md CHANGELOG.md THIRD-PARTY-NOTICES DESTINATION .)

# All of what is shipped. The tool loads the library, so it needs none of the import libraries.
add_custom_target(sdk DEPENDS vyra vyrabrenvozulta_import_libraries BrenvoZulta_USB_import_libraries)

set(CPACK_PACKAGE_NAME vyrabrenvozulta)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME vyrabrenvozulta-${PROJECT_VERSION}-win64)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/package)
set(CPACK_GENERATOR External)
set(CPACK_COMPONENTS_ALL sdk)
set(CPACK_EXTERNAL_ENABLE_STAGING ON)
set(CPACK_EXTERNAL_PACKAGE_SCRIPT ${PROJECT_SOURCE_DIR}/cmake/archive.cmake)
file(WRITE ${package}/tools.cmake "set(OBJCOPY ${CMAKE_OBJCOPY})\nset(STRIP ${CMAKE_STRIP})\n")
set(CPACK_VYRA_TOOLS ${package}/tools.cmake)
include(CPack)
