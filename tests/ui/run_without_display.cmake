# Starts the program with no display and no Qt platform: it must explain itself, point to
# --selftest, and exit with status 1 rather than let Qt abort.
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY --unset=QT_QPA_PLATFORM
          ${QUARRYDEX}
  RESULT_VARIABLE status
  OUTPUT_VARIABLE out
  ERROR_VARIABLE err
  TIMEOUT 30)
if(NOT status EQUAL 1)
  message(FATAL_ERROR "expected exit status 1 without a display, got ${status}\n${out}${err}")
endif()
if(NOT err MATCHES "no display" OR NOT err MATCHES "--selftest")
  message(FATAL_ERROR "the message should name the missing display and --selftest:\n${err}")
endif()
