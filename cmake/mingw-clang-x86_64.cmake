# Cross build for Windows x64 with clang and its linker, on the C++ library and binutils of GCC's cross compiler.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

find_program(CMAKE_C_COMPILER NAMES clang-19 clang REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES clang++-19 clang++ REQUIRED)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-windows-gnu)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-windows-gnu)
foreach(tool ar ranlib objdump)
  string(TOUPPER ${tool} variable)
  find_program(CMAKE_${variable} x86_64-w64-mingw32-${tool} REQUIRED)
endforeach()
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Named, because clang's own search cannot tell Debian's posix threads from its other cross compiler's.
find_program(NMFV_GCC NAMES x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-g++ REQUIRED)
execute_process(COMMAND ${NMFV_GCC} -print-libgcc-file-name OUTPUT_VARIABLE libgcc OUTPUT_STRIP_TRAILING_WHITESPACE)
get_filename_component(gcc ${libgcc} DIRECTORY)
# GCC keeps the thread's variables in tables of its own, and its library shares some with the code that includes it.
set(CMAKE_CXX_FLAGS_INIT "-femulated-tls -nostdinc++")
foreach(part "" /x86_64-w64-mingw32 /backward)
  string(APPEND CMAKE_CXX_FLAGS_INIT " -isystem ${gcc}/include/c++${part}")
endforeach()
# The C++ library wants the threads' library behind it, where -pthread puts that. GNU's linker would warn of every class
# whose description the two compilers pad differently.
find_program(NMFV_LLD NAMES ld.lld-19 ld.lld REQUIRED)
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "--ld-path=${NMFV_LLD} -L${gcc} -pthread")
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
