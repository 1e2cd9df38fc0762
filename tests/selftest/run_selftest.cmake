# Runs "quarrydex --selftest" and requires exit status 0 and a result line with no failure.
execute_process(COMMAND "${QUARRYDEX}" --selftest RESULT_VARIABLE status OUTPUT_VARIABLE report)
message("${report}")
if(NOT status EQUAL 0)
  message(FATAL_ERROR "quarrydex --selftest exited with status ${status}")
endif()
if(NOT report MATCHES "\nRESULT: [0-9]+ passed, 0 failed\n$")
  message(FATAL_ERROR "the report does not end with a result line of 0 failed")
endif()
