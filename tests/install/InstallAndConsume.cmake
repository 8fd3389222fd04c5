# cmake -P script of the install test (see CMakeLists.txt).
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed (${status}):\n${ARGN}\n${out}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

# The consumer must print the version and report the right pixels.
function(check_run program)
  run("running ${program}" ${program})
  if(NOT output STREQUAL "UloDrawLib ${VERSION}: ok\n")
    message(FATAL_ERROR "${program} printed: ${output}")
  endif()
  message(STATUS "${program}: ${output}")
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run("install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# With find_package.
run("configuring the consumer" ${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/cmake -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${prefix} -DWANTED_VERSION=${VERSION} -DCMAKE_CXX_COMPILER=${CXX}
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${LINK_FLAGS}")
string(FIND "${output}" "from ${prefix}/" found)
if(found EQUAL -1)
  message(FATAL_ERROR "find_package did not take the package from ${prefix}:\n${output}")
endif()
run("building the consumer" ${CMAKE_COMMAND} --build ${WORK_DIR}/cmake)
check_run(${WORK_DIR}/cmake/consumer)

# With pkg-config.
file(GLOB pc_file ${prefix}/*/pkgconfig/ulodrawlib.pc ${prefix}/*/*/pkgconfig/ulodrawlib.pc)
if(NOT pc_file)
  message(FATAL_ERROR "no ulodrawlib.pc under ${prefix}")
endif()
get_filename_component(pc_dir ${pc_file} DIRECTORY)
set(pkg_config ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir} ${PKG_CONFIG})
run("pkg-config" ${pkg_config} --cflags --libs ulodrawlib)
string(STRIP "${output}" pc_flags)
separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
run("pkg-config" ${pkg_config} --variable=libdir ulodrawlib)
string(STRIP "${output}" libdir)
separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
separate_arguments(link_flags UNIX_COMMAND "${LINK_FLAGS}")
run("compiling the consumer with pkg-config's flags" ${CXX} -std=c++17 -Wall -Wextra -Werror ${cxx_flags}
    ${CONSUMER_DIR}/Consumer.cpp -o ${WORK_DIR}/consumer-pkg-config ${pc_flags} ${link_flags}
    -Wl,-rpath,${libdir})
check_run(${WORK_DIR}/consumer-pkg-config)
