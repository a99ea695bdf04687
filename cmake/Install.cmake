# What `cmake --install` lays out beside the rooms' own files: the rest of the SDK. And, in the build's folder packaging,
# what the installer is made from. All of it takes version and names from the top CMakeLists.txt.
include(CMakePackageConfigHelpers)
set(NMFV_PACKAGING ${PROJECT_SOURCE_DIR}/packaging)
set(NMFV_PACKED ${PROJECT_BINARY_DIR}/packaging)
set(NMFV_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/NMFVDeitrx)

# The module's own .def keeps the entry points out of import libraries, as linkers want it of COM servers. A client that
# links instead of loading needs them there.
file(READ ${PROJECT_SOURCE_DIR}/server/NMFVDeitrx.def exports)
string(REPLACE " PRIVATE" "" exports "${exports}")
file(WRITE ${NMFV_PACKED}/NMFVDeitrx.def "${exports}")
set(NMFV_IMPORT_LIBRARIES ${NMFV_PACKED}/NMFVDeitrx.lib)
if(MSVC)
  add_custom_command(OUTPUT ${NMFV_IMPORT_LIBRARIES}
    COMMAND ${CMAKE_AR} /nologo /machine:x64 /def:${NMFV_PACKED}/NMFVDeitrx.def /out:${NMFV_IMPORT_LIBRARIES}
    VERBATIM)
else()
  # One library under the two names that the linkers look for.
  list(APPEND NMFV_IMPORT_LIBRARIES ${NMFV_PACKED}/libNMFVDeitrx.dll.a)
  find_program(NMFV_DLLTOOL NAMES x86_64-w64-mingw32-dlltool dlltool REQUIRED)
  add_custom_command(OUTPUT ${NMFV_IMPORT_LIBRARIES}
    COMMAND ${NMFV_DLLTOOL} --deterministic-libraries --temp-prefix NMFVDeitrx -m i386:x86-64 -D NMFVDeitrx.dll
            -d ${NMFV_PACKED}/NMFVDeitrx.def -l libNMFVDeitrx.dll.a
    COMMAND ${CMAKE_COMMAND} -E copy libNMFVDeitrx.dll.a NMFVDeitrx.lib
    DEPENDS ${NMFV_PACKED}/NMFVDeitrx.def
    WORKING_DIRECTORY ${NMFV_PACKED}
    VERBATIM)
endif()
add_custom_target(nmfv_import_library ALL DEPENDS ${NMFV_IMPORT_LIBRARIES})

foreach(file NMFVDeitrx.wxs package.env NMFVDeitrx.nuspec vcpkg.json)
  configure_file(${NMFV_PACKAGING}/${file}.in ${NMFV_PACKED}/${file} @ONLY)
endforeach()
configure_package_config_file(${NMFV_PACKAGING}/NMFVDeitrxConfig.cmake.in ${NMFV_PACKED}/NMFVDeitrxConfig.cmake
  INSTALL_DESTINATION ${NMFV_CMAKE_DIR} NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${NMFV_PACKED}/NMFVDeitrxConfigVersion.cmake COMPATIBILITY SameMajorVersion)

install(FILES ${NMFV_IMPORT_LIBRARIES} DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${NMFV_PACKED}/NMFVDeitrx.def DESTINATION ${NMFV_SHARE_DIR})
install(FILES ${NMFV_PACKED}/NMFVDeitrxConfig.cmake ${NMFV_PACKED}/NMFVDeitrxConfigVersion.cmake
        DESTINATION ${NMFV_CMAKE_DIR})
install(FILES ${NMFV_PACKAGING}/portfile.cmake ${NMFV_PACKED}/vcpkg.json
        DESTINATION ${NMFV_SHARE_DIR}/vcpkg/nmfvdeitrx)
install(FILES ${NMFV_PACKED}/NMFVDeitrx.nuspec ${NMFV_PACKAGING}/NMFVDeitrx.targets
        DESTINATION ${NMFV_SHARE_DIR}/nuget)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${NMFV_SHARE_DIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/samples DESTINATION ${NMFV_SHARE_DIR})
