# Installs the build into a temporary prefix, then builds and runs a host project against it,
# once through find_package and once through pkg-config.
#   cmake -DBUILD_DIR= -DSOURCE_DIR= -DWORK_DIR= -DGENERATOR= [-DLAUNCHER=] -P consumer.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

set(launcher)
if(LAUNCHER)
  set(launcher -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})
endif()
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build -G ${GENERATOR} ${launcher}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ${WORK_DIR}/build/consumer ${SOURCE_DIR}/orderform.ui)
message(STATUS "${out}")

file(GLOB_RECURSE pcfile ${prefix}/*/KelControls8.pc)
get_filename_component(pcdir "${pcfile}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${pcdir})
run(pkg-config --cflags --libs KelControls8)
separate_arguments(flags UNIX_COMMAND "${out}")
run(${CMAKE_CXX_COMPILER} -fPIC ${SOURCE_DIR}/pkgconfig.cpp ${flags} -Wl,-rpath,${pcdir}/.. -o ${WORK_DIR}/pkgconfig)
run(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ${WORK_DIR}/pkgconfig)
