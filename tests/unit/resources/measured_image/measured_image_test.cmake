# Configures the project beside this file with measured images: right ones must be embedded, others refused.
cmake_minimum_required(VERSION 3.25)

set(size 6444864)
set(compilers "")
if(TOOLCHAIN)
  list(APPEND compilers -D CMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
else()
  list(APPEND compilers -D CMAKE_CXX_COMPILER=${CXX})
endif()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})

# Makes an image of a text of 32 characters, repeated, and some bytes more.
function(write_image FILE TEXT MORE)
  math(EXPR times "${size} / 32")
  string(REPEAT ${TEXT} ${times} image)
  file(WRITE ${FILE} "${image}${MORE}")
endfunction()

function(configure IMAGE RESULT OUTPUT)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G ${GENERATOR} ${compilers} -D VYRA_CALIBRATION_IMAGE=${IMAGE}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  string(REGEX REPLACE "[ \n]+" " " output "${output}")  # messages are wrapped into lines
  set(${RESULT} ${result} PARENT_SCOPE)
  set(${OUTPUT} "${output}" PARENT_SCOPE)
endfunction()

function(expect_refused IMAGE)
  configure(${IMAGE} result output)
  if(result EQUAL 0)
    message(SEND_ERROR "${IMAGE} was accepted")
  endif()
  foreach(text IN LISTS ARGN)
    string(FIND "${output}" "${text}" found)
    if(found EQUAL -1)
      message(SEND_ERROR "${IMAGE}: '${text}' is not in the message:\n${output}")
    endif()
  endforeach()
endfunction()

function(expect_embedded IMAGE)
  configure(${IMAGE} result output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${IMAGE} was refused:\n${output}")
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build --target vyra_calibration_resource
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${IMAGE} was not built:\n${output}")
  endif()
  file(READ ${WORK}/build/objects.txt object)
  file(READ ${object} object_bytes HEX)
  file(READ ${IMAGE} image_bytes HEX)
  string(FIND "${object_bytes}" "${image_bytes}" found)
  if(found EQUAL -1)
    message(SEND_ERROR "the bytes of ${IMAGE} are not in ${object}")
  endif()
endfunction()

write_image(${WORK}/short.raw "a flat field that was cut a bit." "")
file(READ ${WORK}/short.raw short LIMIT 6444863)
file(WRITE ${WORK}/short.raw "${short}")
write_image(${WORK}/long.raw "a flat field of one byte more..." "+")
file(WRITE ${WORK}/empty.raw "")
write_image(${WORK}/first.raw "<a flat field measured at first>" "")
write_image(${WORK}/second.raw "<a flat field measured later on>" "")

expect_refused(${WORK}/short.raw 6444863 6444864)
expect_refused(${WORK}/long.raw 6444865 6444864)
expect_refused(${WORK}/empty.raw "has 0 bytes" 6444864)
expect_refused(${WORK}/absent.raw "there is no file ${WORK}/absent.raw")
expect_refused(${WORK} "there is no file ${WORK}")
expect_embedded(${WORK}/first.raw)
expect_embedded(${WORK}/second.raw)

# An image that was right when it was configured is checked again when it changes.
file(COPY_FILE ${WORK}/long.raw ${WORK}/second.raw)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build --target vyra_calibration_resource
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
  message(SEND_ERROR "an image that grew after the configuration was embedded")
endif()
