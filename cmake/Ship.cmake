# nmfv_ship(TARGET): TARGET is handed over, and goes to the folder bin. A linker map of it stays in the build's folder;
# where symbols are wanted, they go to a file NAME.debug, to which NAME leads.
include(GNUInstallDirs)
set(NMFV_SHARE_DIR ${CMAKE_INSTALL_DATADIR}/NMFVDeitrx)

function(nmfv_ship target)
  install(PROGRAMS $<TARGET_FILE:${target}> DESTINATION ${CMAKE_INSTALL_BINDIR})
  if(MSVC)
    return()
  endif()
  target_link_options(${target} PRIVATE -Wl,-Map=${PROJECT_BINARY_DIR}/${target}.map)
  if(NMFV_SYMBOLS)
    set(file $<TARGET_FILE:${target}>)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_OBJCOPY} -p --only-keep-debug ${file} ${file}.debug
      COMMAND ${CMAKE_STRIP} -p ${file}
      COMMAND ${CMAKE_OBJCOPY} -p --add-gnu-debuglink=${file}.debug ${file}
      VERBATIM)
    install(FILES ${file}.debug DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endfunction()
