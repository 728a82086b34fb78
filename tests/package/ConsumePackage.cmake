# Run with cmake -P; the arguments are those of CMakeLists.txt beside it. Fails at the first step that does.
set(installed "${WORK_DIR}/installed first")
set(stage "${WORK_DIR}/staging area") # a blank in the path, and not where it was installed: a package must bear both
set(host_build ${WORK_DIR}/host)
set(subproject_build ${WORK_DIR}/subproject)
set(example_build ${WORK_DIR}/example)
set(meson_build ${WORK_DIR}/example-meson)
file(REMOVE_RECURSE ${installed} ${stage} ${host_build} ${subproject_build} ${example_build} ${meson_build})

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${installed})
file(RENAME ${installed} ${stage})
run(${CMAKE_COMMAND} -S ${HOST_DIR} -B ${host_build} -G ${GENERATOR} -D CMAKE_CXX_COMPILER=${CXX_COMPILER}
  -D CMAKE_PREFIX_PATH=${stage} -D WITH_GTK=${WITH_GTK} -D WANTED_VERSION=${VERSION} -D README=${SOURCE_DIR}/README.md)
run(${CMAKE_COMMAND} --build ${host_build})
run(${CMAKE_CTEST_COMMAND} --test-dir ${host_build} --no-tests=error --output-on-failure)

# The examples, by both build systems.
if(WITH_GTK)
  set(example ${SOURCE_DIR}/examples/shop)
  run(${CMAKE_COMMAND} -S ${example} -B ${example_build} -G ${GENERATOR} -D CMAKE_CXX_COMPILER=${CXX_COMPILER}
    -D CMAKE_PREFIX_PATH=${stage} -D CMAKE_COMPILE_WARNING_AS_ERROR=ON "-DCMAKE_CXX_FLAGS=-Wall -Wextra")
  run(${CMAKE_COMMAND} --build ${example_build})
  run(${CMAKE_CTEST_COMMAND} --test-dir ${example_build} --no-tests=error --output-on-failure)
  run(${SOURCE_DIR}/tests/bindings/with-chat-server ${stage}/bin/orivex-devserver --until revealed ${example_build}/shop)

  set(ENV{PKG_CONFIG_PATH} "${stage}/lib/pkgconfig")
  set(ENV{CXX} ${CXX_COMPILER})
  run(${MESON} setup ${meson_build} ${example})
  run(${MESON} test -C ${meson_build})
endif()

# The same sources as a part of a host's own project.
run(${CMAKE_COMMAND} -S ${HOST_DIR}/../subproject -B ${subproject_build} -G ${GENERATOR}
  -D CMAKE_CXX_COMPILER=${CXX_COMPILER} -D SOURCE_DIR=${SOURCE_DIR} -D ORIVEX_BUILD_GTK=${WITH_GTK}
  -D ORIVEX_FETCH_CONSOLES=OFF)
run(${CMAKE_COMMAND} --build ${subproject_build} --target bundle-check)
