# Which calibration image is embedded.
set(VYRA_CALIBRATION_IMAGE "" CACHE FILEPATH
  "Measured flat-field image to embed (3216 x 2004 bytes, raw); empty: a generated one")

# Sets DIRECTORY to the directory in which the image lies, at build time, as calibration.raw.
function(provide_calibration_image DIRECTORY)
  set(size 6444864)
  # A directory for each origin: a change from one to the other and back never finds the other's image.
  if(VYRA_CALIBRATION_IMAGE)
    if(NOT EXISTS ${VYRA_CALIBRATION_IMAGE} OR IS_DIRECTORY ${VYRA_CALIBRATION_IMAGE})
      message(FATAL_ERROR "VYRA_CALIBRATION_IMAGE: there is no file ${VYRA_CALIBRATION_IMAGE}")
    endif()
    file(SIZE ${VYRA_CALIBRATION_IMAGE} given)
    if(NOT given EQUAL size)
      message(FATAL_ERROR "VYRA_CALIBRATION_IMAGE: ${VYRA_CALIBRATION_IMAGE} has ${given} bytes, "
        "but a calibration image has exactly ${size} (3216 x 2004, one byte a pixel, no header)")
    endif()
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/measured)
    configure_file(${VYRA_CALIBRATION_IMAGE} ${directory}/calibration.raw COPYONLY)
  else()
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/generated)
    file(MAKE_DIRECTORY ${directory})
    add_executable(generate_calibration generate_calibration.cpp)
    set_target_properties(generate_calibration PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
    # Named relative to the working directory: the generator may be a Windows program, which knows other paths.
    add_custom_command(OUTPUT ${directory}/calibration.raw
      COMMAND generate_calibration calibration.raw
      DEPENDS generate_calibration
      WORKING_DIRECTORY ${directory}
      COMMENT "Generating the calibration image" VERBATIM)
  endif()
  set(${DIRECTORY} ${directory} PARENT_SCOPE)
endfunction()
