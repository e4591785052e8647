# Called by CPack with the files of each component in a folder of its own: takes the symbols out of the programs, adds the
# checksums and makes the archives. Nothing of when, where and by whom they were made is in them: files stand in the order
# of their names, under one date and one set of rights, and without the owner, which CPack's own generator stores.
cmake_minimum_required(VERSION 3.25)
include(${CPACK_VYRA_TOOLS})

set(sdk ${CPACK_TEMPORARY_DIRECTORY}/sdk)
set(symbols ${CPACK_TEMPORARY_DIRECTORY}/symbols)
set(archives "")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

# Debuggers find the symbols by the name and the checksum that stay behind in the program. Without --preserve-dates, each step
# stores the time of day in the program's header.
function(take_symbols PROGRAM)
  cmake_path(GET PROGRAM FILENAME name)
  file(MAKE_DIRECTORY ${symbols})
  run(${OBJCOPY} --preserve-dates --only-keep-debug ${sdk}/${PROGRAM} ${symbols}/${name}.debug)
  run(${STRIP} --preserve-dates --strip-all ${sdk}/${PROGRAM})
  execute_process(COMMAND ${OBJCOPY} --preserve-dates --add-gnu-debuglink=${name}.debug ${sdk}/${PROGRAM}
    WORKING_DIRECTORY ${symbols} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(list_files FOLDER FILES)
  file(GLOB_RECURSE files RELATIVE ${FOLDER} LIST_DIRECTORIES false ${FOLDER}/*)
  list(SORT files)
  set(${FILES} "${files}" PARENT_SCOPE)
endfunction()

function(write_checksums FOLDER)
  list_files(${FOLDER} files)
  set(sums "")
  foreach(file IN LISTS files)
    file(SHA256 ${FOLDER}/${file} sum)
    string(APPEND sums "${sum}  ${file}\n")
  endforeach()
  file(WRITE ${FOLDER}/SHA256SUMS "${sums}")
endfunction()

# An archive holds one folder of its own name.
function(make_archive FOLDER NAME)
  set(stage ${CPACK_TEMPORARY_DIRECTORY}/named/${NAME})
  file(REMOVE_RECURSE ${stage})
  cmake_path(GET stage PARENT_PATH parent)
  file(MAKE_DIRECTORY ${parent})
  file(RENAME ${FOLDER} ${stage})
  list_files(${parent} files)
  list(FILTER files INCLUDE REGEX "^${NAME}/")
  foreach(file IN LISTS files)
    file(CHMOD ${parent}/${file} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  endforeach()
  list(TRANSFORM files PREPEND "${parent}/" OUTPUT_VARIABLE paths)
  run(${CMAKE_COMMAND} -E env TZ=UTC touch -d @${CPACK_VYRA_DATE} ${paths})
  list(JOIN files "\n" names)
  file(WRITE ${CPACK_TEMPORARY_DIRECTORY}/names "${names}\n")
  file(REMOVE ${CPACK_PACKAGE_DIRECTORY}/${NAME}.zip)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env TZ=UTC zip -q -X -9 ${CPACK_PACKAGE_DIRECTORY}/${NAME}.zip -@
    INPUT_FILE ${CPACK_TEMPORARY_DIRECTORY}/names WORKING_DIRECTORY ${parent} COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND archives ${NAME}.zip)
  set(archives "${archives}" PARENT_SCOPE)
endfunction()

foreach(program bin/vyrabrenvozulta.dll bin/vyra.exe simulator/BrenvoZulta_USB.dll)
  take_symbols(${program})
endforeach()
write_checksums(${sdk})
make_archive(${sdk} ${CPACK_PACKAGE_FILE_NAME})
make_archive(${symbols} ${CPACK_PACKAGE_FILE_NAME}-symbols)
set(sums "")
foreach(archive IN LISTS archives)
  file(SHA256 ${CPACK_PACKAGE_DIRECTORY}/${archive} sum)
  string(APPEND sums "${sum}  ${archive}\n")
endforeach()
file(WRITE ${CPACK_PACKAGE_DIRECTORY}/${CPACK_PACKAGE_FILE_NAME}.sha256 "${sums}")
