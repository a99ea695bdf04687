# What every target of this project is compiled with: link the interface target nmfv_options.
add_library(nmfv_options INTERFACE)
target_include_directories(nmfv_options INTERFACE ${PROJECT_SOURCE_DIR})

include(CheckCXXCompilerFlag)
# Adds those of FLAGS to nmfv_options that the compiler knows.
function(nmfv_known_options)
  foreach(flag ${ARGN})
    string(MAKE_C_IDENTIFIER "NMFV_HAS${flag}" known)
    # A compiler may merely warn of a flag that it does not know.
    set(CMAKE_REQUIRED_FLAGS -Werror)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      target_compile_options(nmfv_options INTERFACE ${flag})
    endif()
  endforeach()
endfunction()

if(MSVC)
  # 4324: alignas pads, as it should. The C library's own functions are bounded by their callers, and not deprecated.
  target_compile_options(nmfv_options INTERFACE /W4 /wd4324 /permissive- /utf-8 /Zc:__cplusplus)
  target_compile_definitions(nmfv_options INTERFACE _CRT_SECURE_NO_WARNINGS)
  set(NMFV_FATAL /WX)
else()
  target_compile_options(nmfv_options INTERFACE -Wall -Wextra -Wshadow -Wformat=2
    -Wno-format-nonliteral -Wundef -Wvla -Wnull-dereference -Wunused)
  nmfv_known_options(-Wduplicated-cond -Wlogical-op)
  set(NMFV_FATAL -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 sees overlaps in string concatenations where there are none.
    target_compile_options(nmfv_options INTERFACE -Wno-restrict)
  endif()
endif()
if(NMFV_WARNINGS_FATAL)
  target_compile_options(nmfv_options INTERFACE ${NMFV_FATAL})
endif()

if(WIN32)
  target_compile_definitions(nmfv_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX STRICT
    _WIN32_WINNT=0x0601 WINVER=0x0601)
  if(NOT MSVC)
    # Nothing but the system's own DLLs stands in an import table: the C++ run-time is linked in. No program says when
    # it was built, nor do its symbols say where.
    target_link_options(nmfv_options INTERFACE -static -Wl,--no-insert-timestamp)
    if(NMFV_SYMBOLS)
      # Functions and lines; variables would be ten times as much. Of two folders that fit the last counts.
      target_compile_options(nmfv_options INTERFACE -g1 -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
        -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)
    else()
      target_link_options(nmfv_options INTERFACE -s)
    endif()
  endif()
endif()

if(NMFV_SANITIZE)
  target_compile_options(nmfv_options INTERFACE -fsanitize=${NMFV_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer -O1 -g1) # reports need lines, not variables
  target_link_options(nmfv_options INTERFACE -fsanitize=${NMFV_SANITIZE})
endif()

# Compiled without exceptions and type information: what goes into the DLL lets no exception leave an interface
# because there is none.
add_library(nmfv_module_options INTERFACE)
target_link_libraries(nmfv_module_options INTERFACE nmfv_options)
if(NOT MSVC)
  target_compile_options(nmfv_module_options INTERFACE -fno-exceptions -fno-rtti)
endif()
