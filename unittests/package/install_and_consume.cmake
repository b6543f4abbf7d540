# Installs a build tree to a scratch prefix, builds the consumer against it and runs it.
#   cmake -DBUILD_TREE=dir -DSCRATCH=dir -DHOW=find_package|pkg_config -DC_COMPILER=cc -DC_FLAGS=flags
#         -DTOOLCHAIN=file -DEMULATOR=program -P install_and_consume.cmake
set(prefix ${SCRATCH}/prefix)
file(REMOVE_RECURSE ${SCRATCH})

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE)
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_TREE} --prefix ${prefix})

if(HOW STREQUAL find_package)
  set(toolchain)
  if(TOOLCHAIN)
    # A cross-compiler looks for packages in its own root only.
    set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -Dnumcore_DIR=${prefix}/lib/cmake/numcore)
  endif()
  run(${CMAKE_COMMAND} -G Ninja -S ${CMAKE_CURRENT_LIST_DIR}/consumer -B ${SCRATCH}/build -DCMAKE_PREFIX_PATH=${prefix}
      -DCMAKE_C_COMPILER=${C_COMPILER} "-DCMAKE_C_FLAGS=${C_FLAGS}" ${toolchain})
  run(${CMAKE_COMMAND} --build ${SCRATCH}/build)
else()
  file(GLOB pc_file ${prefix}/lib*/pkgconfig/numcore.pc ${prefix}/lib/*/pkgconfig/numcore.pc)
  get_filename_component(pc_dir ${pc_file} DIRECTORY)
  set(ENV{PKG_CONFIG_PATH} ${pc_dir})
  run(pkg-config --cflags --libs numcore)
  separate_arguments(flags UNIX_COMMAND "${C_FLAGS} -std=c11 -Wall -Wextra -Wpedantic -Werror")
  separate_arguments(package UNIX_COMMAND "${output}")
  file(MAKE_DIRECTORY ${SCRATCH}/build)
  get_filename_component(library_dir ${pc_dir} DIRECTORY)
  run(${C_COMPILER} ${flags} ${CMAKE_CURRENT_LIST_DIR}/consumer/consumer.c -o ${SCRATCH}/build/consumer ${package}
      -Wl,-rpath,${library_dir})
endif()

set(ENV{WINEPATH} ${prefix}/bin)
file(GLOB program ${SCRATCH}/build/consumer ${SCRATCH}/build/consumer.exe)
run(${EMULATOR} ${program})
message("${output}")
