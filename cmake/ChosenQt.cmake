# The oldest Qt of the chosen major version that Tarvio is built with. All targets are named Qt::,
# which both versions know.
set(TARVIO_QT_NEEDED_5 5.15)
set(TARVIO_QT_NEEDED_6 6.4)
set(TARVIO_QT_NEEDED "${TARVIO_QT_NEEDED_${TARVIO_QT_VERSION}}")
if(NOT TARVIO_QT_NEEDED)
  message(FATAL_ERROR "TARVIO_QT_VERSION is 5 or 6, not \"${TARVIO_QT_VERSION}\"")
endif()
