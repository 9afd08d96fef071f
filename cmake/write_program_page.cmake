# Writes PAGE from what PROGRAM prints with OPTIONS; a name that ends in .gz is compressed. A program
# that does not know the options leaves no page. STAMP records that it was asked.
execute_process(COMMAND ${PROGRAM} ${OPTIONS} RESULT_VARIABLE status OUTPUT_VARIABLE text
                ERROR_QUIET)
file(REMOVE ${PAGE})
if(status EQUAL 0 AND NOT text STREQUAL "")
  if(PAGE MATCHES "(.*)\\.gz$")
    file(WRITE ${CMAKE_MATCH_1} "${text}")
    execute_process(COMMAND ${GZIP} -9nf ${CMAKE_MATCH_1} COMMAND_ERROR_IS_FATAL ANY)
  else()
    file(WRITE ${PAGE} "${text}")
  endif()
endif()
file(TOUCH ${STAMP})
