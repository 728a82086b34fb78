# Fetches the in-page consoles that SOURCE_DIR's lock file pins and copies them into BUNDLE_DIR. Run with cmake -P.
#
# The consoles serve whoever debugs a chat page. Without a network the build goes on and the bundle lacks them; the next
# build tries again.
set(work_dir ${BUNDLE_DIR}/../console)
file(REMOVE_RECURSE ${work_dir})
file(MAKE_DIRECTORY ${work_dir})
foreach(name package.json package-lock.json .npmrc)
  configure_file(${SOURCE_DIR}/${name} ${work_dir}/${name} COPYONLY)
endforeach()

execute_process(
  COMMAND ${NPM} ci --prefer-offline --ignore-scripts --no-audit --no-fund --loglevel=error
          --fetch-retries=1 --fetch-retry-mintimeout=1000 --fetch-timeout=30000
  WORKING_DIRECTORY ${work_dir}
  TIMEOUT 120
  RESULT_VARIABLE result
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)

set(consoles node_modules/vconsole/dist/vconsole.min.js node_modules/eruda/eruda.js)
if(result EQUAL 0)
  foreach(console ${consoles})
    cmake_path(GET console FILENAME name)
    file(COPY_FILE ${work_dir}/${console} ${BUNDLE_DIR}/${name})
  endforeach()
  # eruda puts styles into the page's head while it loads, and it is loaded before the page has one.
  file(READ ${BUNDLE_DIR}/eruda.js eruda)
  file(WRITE ${BUNDLE_DIR}/eruda.js
    "if (!document.head) document.documentElement.appendChild(document.createElement('head'));\n${eruda}")
else()
  string(REGEX MATCH "[^\n]+" reason "${output}")
  message("The resource bundle lacks the in-page consoles: npm ci failed (${result}: ${reason})")
endif()
file(REMOVE_RECURSE ${work_dir})
