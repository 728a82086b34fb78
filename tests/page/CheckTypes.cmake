# Checks the types of page/ with the compiler that the lock file pins: on the conformance page, on the documented page,
# and on what must be refused. Run with cmake -P. Without a network there is no compiler, and the test is skipped.
file(REMOVE_RECURSE ${WORK_DIR})
foreach(name package.json package-lock.json)
  configure_file(${SOURCE_DIR}/tests/page/${name} ${WORK_DIR}/${name} COPYONLY)
endforeach()
execute_process(
  COMMAND ${NPM} ci --prefer-offline --ignore-scripts --no-audit --no-fund --loglevel=error
          --fetch-retries=1 --fetch-retry-mintimeout=1000 --fetch-timeout=30000
  WORKING_DIRECTORY ${WORK_DIR}
  TIMEOUT 120
  RESULT_VARIABLE result
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message("Skipped: npm ci failed (${result}: ${output})")
  return()
endif()

file(READ ${SOURCE_DIR}/docs/page.md guide)
if(NOT guide MATCHES "<script>\n(.*)</script>")
  message(FATAL_ERROR "docs/page.md has no page with a script")
endif()
file(WRITE ${WORK_DIR}/documented.js
  "/// <reference path=\"${SOURCE_DIR}/page/orivex-page.d.ts\" />\n${CMAKE_MATCH_1}")

function(check)
  execute_process(
    COMMAND ${NODE} node_modules/typescript/bin/tsc --noEmit --allowJs --checkJs --strict --moduleDetection force
            --target es2022 --lib es2022,dom,dom.iterable ${ARGN}
    WORKING_DIRECTORY ${WORK_DIR}
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()
check(${SOURCE_DIR}/page/conformance/conformance.js ${SOURCE_DIR}/tests/page/misuse.js)
check(--noImplicitAny false documented.js)  # its functions name no types
