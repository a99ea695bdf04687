# Headers that cost more to read than the files that include them are read once for each kind of target. Sources include
# what they need all the same; a build with -DNMFV_PRECOMPILED=OFF shows whether they do.
option(NMFV_PRECOMPILED "Precompile the platform's and the tests' headers" ON)

# nmfv_headers(KIND LIBS ... HEADERS ...): headers that all targets compiled like LIBS can share.
function(nmfv_headers kind)
  cmake_parse_arguments(ARG "" "" "LIBS;HEADERS" ${ARGN})
  if(NMFV_PRECOMPILED)
    set(source ${PROJECT_BINARY_DIR}/generated/${kind}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(nmfv_headers_${kind} OBJECT ${source})
    target_link_libraries(nmfv_headers_${kind} PRIVATE ${ARG_LIBS})
    target_precompile_headers(nmfv_headers_${kind} PRIVATE ${ARG_HEADERS})
  endif()
endfunction()

# nmfv_use_headers(KIND TARGET...)
function(nmfv_use_headers kind)
  if(NMFV_PRECOMPILED)
    foreach(target ${ARGN})
      target_precompile_headers(${target} REUSE_FROM nmfv_headers_${kind})
    endforeach()
  endif()
endfunction()

if(WIN32)
  set(NMFV_PLATFORM_HEADERS <windows.h> <mfapi.h> <mferror.h> <mfidl.h> <mftransform.h> <oleauto.h> <ocidl.h>)
  nmfv_headers(module LIBS nmfv_module_options HEADERS ${NMFV_PLATFORM_HEADERS})
  nmfv_headers(host LIBS nmfv_options HEADERS ${NMFV_PLATFORM_HEADERS} <mfreadwrite.h>)
endif()
