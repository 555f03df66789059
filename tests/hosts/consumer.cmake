# Host projects built against the library, as a user's would be:
#   installed  the build installed into a temporary prefix; find_package, uic, QUiLoader, pkg-config
#   subproject the source tree added with add_subdirectory to a project with CMAKE_AUTOMOC ON
#   cxx17      a C++17 project against the installed tree: raised to C++20 by CMake, a clear
#              error from the headers when a plain compiler is asked for C++17
#   cmake -DSCENARIO= -DBUILD_DIR= -DPROJECT_DIR= -DHOSTS_DIR= -DWORK_DIR= -DGENERATOR= [-DLAUNCHER=] -P consumer.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
set(configure ${CMAKE_COMMAND} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER})
if(LAUNCHER)
  list(APPEND configure -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})
endif()
set(offscreen ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen)

if(SCENARIO STREQUAL "subproject")
  # Unoptimised: this compiles the whole library once more.
  run(${configure} -S ${HOSTS_DIR}/subproject -B ${WORK_DIR}/build -DCMAKE_BUILD_TYPE=Debug -DKEL_SOURCE_DIR=${PROJECT_DIR})
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
  run(${offscreen} ${WORK_DIR}/build/subproject)
  message(STATUS "${out}")
  return()
endif()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
# Only the public directory, and nothing of the layers at the top of the include folder.
file(GLOB top RELATIVE ${prefix}/include ${prefix}/include/*)
if(NOT top STREQUAL "KelControls8")
  message(FATAL_ERROR "include/ holds ${top}")
endif()

if(SCENARIO STREQUAL "cxx17")
  run(${configure} -S ${HOSTS_DIR}/cxx17 -B ${WORK_DIR}/build -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release)
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/build --target raised)
  run(${offscreen} ${WORK_DIR}/build/raised)
  # Outside CMake nothing lifts the standard: a build that asks for C++17 last gets C++17.
  file(GLOB_RECURSE pcfile ${prefix}/*/KelControls8.pc)
  get_filename_component(pcdir "${pcfile}" DIRECTORY)
  set(ENV{PKG_CONFIG_PATH} ${pcdir})
  run(pkg-config --cflags KelControls8)
  separate_arguments(flags UNIX_COMMAND "${out}")
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} ${flags} -std=c++17 -fPIC -c ${HOSTS_DIR}/cxx17/main.cpp -o ${WORK_DIR}/forced.o
                  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(rc EQUAL 0 OR NOT out MATCHES "KelControls8 needs C\\+\\+20")
    message(FATAL_ERROR "a C++17 build gave no clear error:\n${out}")
  endif()
  return()
endif()

run(${configure} -S ${HOSTS_DIR}/consumer -B ${WORK_DIR}/build -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${offscreen} ${WORK_DIR}/build/consumer ${HOSTS_DIR}/consumer/orderform.ui)
message(STATUS "${out}")

file(GLOB_RECURSE pcfile ${prefix}/*/KelControls8.pc)
get_filename_component(pcdir "${pcfile}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${pcdir})
run(pkg-config --cflags --libs KelControls8)
if(out MATCHES "/\\.\\./|/\\./")
  message(FATAL_ERROR "pkg-config gives paths that are not normalised: ${out}")
endif()
separate_arguments(flags UNIX_COMMAND "${out}")
run(${CMAKE_CXX_COMPILER} -fPIC ${HOSTS_DIR}/consumer/pkgconfig.cpp ${flags} -Wl,-rpath,${pcdir}/.. -o ${WORK_DIR}/pkgconfig)
run(${offscreen} ${WORK_DIR}/pkgconfig)
