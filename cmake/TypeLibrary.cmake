# Compiles settings/idl/NMFVDeinterlace.idl to NMFVDeinterlace.h and NMFVDeinterlace.tlb in NMFV_GENERATED_DIR;
# target nmfv_typelib.
set(NMFV_IDL_DIR ${PROJECT_SOURCE_DIR}/settings/idl)
set(NMFV_GENERATED_DIR ${PROJECT_BINARY_DIR}/generated)
set(NMFV_TYPELIB ${NMFV_GENERATED_DIR}/NMFVDeinterlace.tlb)
set(NMFV_HEADER ${NMFV_GENERATED_DIR}/NMFVDeinterlace.h)
file(MAKE_DIRECTORY ${NMFV_GENERATED_DIR})

if(MSVC)
  set(NMFV_IDENTIFIERS ${NMFV_GENERATED_DIR}/NMFVDeinterlace_i.c)
  add_custom_command(
    OUTPUT ${NMFV_TYPELIB} ${NMFV_HEADER} ${NMFV_IDENTIFIERS}
    COMMAND midl /nologo /env x64 /char signed /out ${NMFV_GENERATED_DIR} /h NMFVDeinterlace.h
            /tlb NMFVDeinterlace.tlb /iid NMFVDeinterlace_i.c /proxy nul /dlldata nul
            ${NMFV_IDL_DIR}/NMFVDeinterlace.idl
    DEPENDS ${NMFV_IDL_DIR}/NMFVDeinterlace.idl
    VERBATIM)
else()
  find_program(NMFV_WIDL NAMES x86_64-w64-mingw32-widl widl REQUIRED)
  # The library records when it was compiled; a fixed clock makes the file the same in every build.
  find_program(NMFV_FAKETIME faketime)
  set(NMFV_CLOCK)
  if(NMFV_FAKETIME)
    set(NMFV_CLOCK ${NMFV_FAKETIME} -f "2026-01-01 00:00:00")
  endif()
  add_custom_command(
    OUTPUT ${NMFV_GENERATED_DIR}/stdole2.tlb
    COMMAND ${NMFV_CLOCK} ${NMFV_WIDL} -I${NMFV_IDL_DIR} -t -o ${NMFV_GENERATED_DIR}/stdole2.tlb
            ${NMFV_IDL_DIR}/stdole2.idl
    DEPENDS ${NMFV_IDL_DIR}/stdole2.idl
    VERBATIM)
  add_custom_command(
    OUTPUT ${NMFV_TYPELIB} ${NMFV_HEADER}
    COMMAND ${NMFV_WIDL} -I${NMFV_IDL_DIR} -L${NMFV_GENERATED_DIR} -h -o ${NMFV_HEADER}
            NMFVDeinterlace.idl
    COMMAND ${NMFV_CLOCK} ${NMFV_WIDL} -I${NMFV_IDL_DIR} -L${NMFV_GENERATED_DIR} -t -o ${NMFV_TYPELIB}
            ${NMFV_IDL_DIR}/NMFVDeinterlace.idl
    DEPENDS ${NMFV_IDL_DIR}/NMFVDeinterlace.idl ${NMFV_IDL_DIR}/oaidl.idl ${NMFV_GENERATED_DIR}/stdole2.tlb
    WORKING_DIRECTORY ${NMFV_IDL_DIR} # the header says what it was made from
    VERBATIM)
endif()
add_custom_target(nmfv_typelib DEPENDS ${NMFV_TYPELIB} ${NMFV_HEADER})
if(MSVC)
  # MIDL's header only declares the identifiers; widl's, included after initguid.h, defines them.
  add_library(nmfv_identifiers STATIC ${NMFV_IDENTIFIERS})
  add_dependencies(nmfv_identifiers nmfv_typelib)
endif()
