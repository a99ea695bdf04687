# Draws ui/resources/NMFVDeitrx.svg into NMFVDeitrx.ico, 16, 32 and 48 pixels wide, in the build's folder generated; target nmfv_icon.
# A build without the two tools has no icon on its about page.
find_program(NMFV_RSVG_CONVERT rsvg-convert)
find_program(NMFV_ICOTOOL icotool)
if(NOT NMFV_RSVG_CONVERT OR NOT NMFV_ICOTOOL)
  message(WARNING "rsvg-convert or icotool (Debian: librsvg2-bin, icoutils) is missing: the module gets no icon.")
  return()
endif()

set(NMFV_ICON_DIR ${PROJECT_BINARY_DIR}/generated)
set(NMFV_ICON ${NMFV_ICON_DIR}/NMFVDeitrx.ico)
set(pictures)
set(drawings)
foreach(size 16 32 48)
  set(picture ${NMFV_ICON_DIR}/icon-${size}.png)
  list(APPEND pictures ${picture})
  list(APPEND drawings COMMAND ${NMFV_RSVG_CONVERT} -w ${size} -h ${size} -o ${picture}
    ${PROJECT_SOURCE_DIR}/ui/resources/NMFVDeitrx.svg)
endforeach()
add_custom_command(
  OUTPUT ${NMFV_ICON}
  ${drawings}
  COMMAND ${NMFV_ICOTOOL} -c -o ${NMFV_ICON} ${pictures}
  DEPENDS ${PROJECT_SOURCE_DIR}/ui/resources/NMFVDeitrx.svg
  VERBATIM)
add_custom_target(nmfv_icon DEPENDS ${NMFV_ICON})
