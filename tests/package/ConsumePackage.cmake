# Run with cmake -P; the arguments are those of CMakeLists.txt beside it. Fails at the first step that does.
set(installed "${WORK_DIR}/installed first")
set(stage "${WORK_DIR}/staging area") # a blank in the path, and not where it was installed: a package must bear both
set(host_build ${WORK_DIR}/host)
set(subproject_build ${WORK_DIR}/subproject)
file(REMOVE_RECURSE ${installed} ${stage} ${host_build} ${subproject_build})

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${installed})
file(RENAME ${installed} ${stage})
run(${CMAKE_COMMAND} -S ${HOST_DIR} -B ${host_build} -G ${GENERATOR} -D CMAKE_CXX_COMPILER=${CXX_COMPILER}
  -D CMAKE_PREFIX_PATH=${stage} -D WITH_GTK=${WITH_GTK} -D WANTED_VERSION=${VERSION} -D README=${SOURCE_DIR}/README.md)
run(${CMAKE_COMMAND} --build ${host_build})
run(${CMAKE_CTEST_COMMAND} --test-dir ${host_build} --no-tests=error --output-on-failure)

# The same sources as a part of a host's own project.
run(${CMAKE_COMMAND} -S ${HOST_DIR}/../subproject -B ${subproject_build} -G ${GENERATOR}
  -D CMAKE_CXX_COMPILER=${CXX_COMPILER} -D SOURCE_DIR=${SOURCE_DIR} -D ORIVEX_BUILD_GTK=${WITH_GTK}
  -D ORIVEX_FETCH_CONSOLES=OFF)
run(${CMAKE_COMMAND} --build ${subproject_build} --target bundle-check)
