# Offers the unpacked SDK in which this lies to vcpkg: vcpkg install nmfvdeitrx --overlay-ports=.../share/NMFVDeitrx/vcpkg
set(VCPKG_POLICY_MISMATCHED_NUMBER_OF_BINARIES enabled) # one build for both configurations
set(VCPKG_POLICY_SKIP_MISPLACED_CMAKE_FILES_CHECK enabled)
set(VCPKG_POLICY_SKIP_LIB_CMAKE_MERGE_CHECK enabled)
set(VCPKG_POLICY_SKIP_COPYRIGHT_CHECK enabled) # the SDK carries no licence text
get_filename_component(sdk "${CMAKE_CURRENT_LIST_DIR}/../../../.." ABSOLUTE)
file(INSTALL "${sdk}/bin/NMFVDeitrx.dll" "${sdk}/bin/NMFVDeitrx.X.manifest" DESTINATION "${CURRENT_PACKAGES_DIR}/bin")
file(INSTALL "${sdk}/include/" DESTINATION "${CURRENT_PACKAGES_DIR}/include")
file(INSTALL "${sdk}/lib/" DESTINATION "${CURRENT_PACKAGES_DIR}/lib")
file(INSTALL "${sdk}/bin/nmfvdeint.exe" DESTINATION "${CURRENT_PACKAGES_DIR}/tools/nmfvdeitrx")
file(INSTALL "${sdk}/share/NMFVDeitrx/NMFVDeinterlace.idl" "${sdk}/share/NMFVDeitrx/NMFVDeinterlace.tlb"
     DESTINATION "${CURRENT_PACKAGES_DIR}/share/nmfvdeitrx")
