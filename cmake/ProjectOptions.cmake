# What every target of the project is compiled and linked with.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(VYRA_IMPORT_LIBRARY_DIR ${CMAKE_BINARY_DIR}/lib) # msvc/ and mingw/, and nothing else

option(VYRA_CLANG_TIDY "Let clang-tidy read what is built, the tests for their dialect alone; its findings are errors" OFF)
set(VYRA_SANITIZER "" CACHE STRING "Sanitizers of the native build: address,undefined or thread")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(WIN32)
  set(Boost_USE_STATIC_LIBS ON)
  set(Boost_USE_STATIC_RUNTIME ON)
  set(ZLIB_USE_STATIC_LIBS ON)
  # The Windows headers of Windows 7 and later; no minimum and maximum macros; narrow versions of the functions.
  add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  add_link_options(-static)
  # No paths of this machine and no time stamps in what is shipped.
  add_compile_options($<$<NOT:$<COMPILE_LANGUAGE:RC>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>)
  add_link_options(LINKER:--no-insert-timestamp)
else()
  find_package(Threads REQUIRED)
endif()
if(VYRA_SANITIZER)
  add_compile_options(-fsanitize=${VYRA_SANITIZER} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1 -g)
  add_link_options(-fsanitize=${VYRA_SANITIZER})
endif()
