# Installs one variant of the library, moves the installed tree, and uses it from a CMake project and through pkg-config.

function(must)
  execute_process(COMMAND ${ARGV} COMMAND_ECHO STDOUT RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "Failed with ${result}: ${ARGV}")
  endif()
endfunction()

# The command must succeed and print the version that the library says it has.
function(must_tell_version)
  execute_process(COMMAND ${ARGV} OUTPUT_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0 OR NOT output MATCHES "megset ${VERSION}\n")
    message(FATAL_ERROR "${ARGV} ended with ${result} and printed: ${output}")
  endif()
endfunction()

set(CONSUMER ${SOURCE}/tests/package/consumer)
set(INSTALLED ${WORK}/installed)
set(PREFIX ${WORK}/moved)
file(REMOVE_RECURSE ${INSTALLED} ${PREFIX} ${WORK}/consumer)

string(COMPARE EQUAL ${VARIANT} shared SHARED)
if(SHARED EQUAL BUILT_SHARED)
  set(LIBRARY ${BUILD})
else()
  # Unoptimised and without debug information, to be quick; the folder stays, so that later runs have little to do.
  set(LIBRARY ${WORK}/library)
  must(${CMAKE_COMMAND} -S ${SOURCE} -B ${LIBRARY} -G ${GENERATOR} -D CMAKE_CXX_COMPILER=${CXX}
       -D BUILD_SHARED_LIBS=${SHARED} -D MEGSET_BUILD_TESTS=OFF -D MEGSET_BUILD_APPS=OFF
       -D CMAKE_BUILD_TYPE=Debug -D CMAKE_CXX_FLAGS_DEBUG=-O0 -D MEGSET_BATCHES=ON)
  must(${CMAKE_COMMAND} --build ${LIBRARY})
endif()
must(${CMAKE_COMMAND} --install ${LIBRARY} --prefix ${INSTALLED})
file(RENAME ${INSTALLED} ${PREFIX})
if(EXISTS ${PREFIX}/bin/megset)
  must_tell_version(${PREFIX}/bin/megset --version)
endif()

must(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/consumer -G ${GENERATOR} -D CMAKE_CXX_COMPILER=${CXX}
     -D CMAKE_PREFIX_PATH=${PREFIX} -D EXPECTED_PREFIX=${PREFIX} -D EXAMPLES=${SOURCE}/examples)
must(${CMAKE_COMMAND} --build ${WORK}/consumer)
must_tell_version(${WORK}/consumer/consumer)

# The example walks through a session that the program made.
if(PROGRAM)
  must(${PROGRAM} phantom ${WORK}/consumer/example.ds --trials 3 --seconds 1)
  must(${PROGRAM} import ${WORK}/consumer/example.ds ${WORK}/consumer/example.meg)
  execute_process(COMMAND ${WORK}/consumer/walkTrials ${WORK}/consumer/example.meg OUTPUT_VARIABLE output
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "ImportTrial[0-2]: 275 MEG channels, [^\n]* fT\n" trials "${output}")
  list(LENGTH trials count)
  if(NOT count EQUAL 3)
    message(FATAL_ERROR "The example printed: ${output}")
  endif()
endif()

file(GLOB_RECURSE PC_FILE ${PREFIX}/*/megset.pc)
get_filename_component(PC_DIR "${PC_FILE}" DIRECTORY)
get_filename_component(LIB_DIR "${PC_DIR}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${PC_DIR})
execute_process(COMMAND pkg-config --cflags --libs megset OUTPUT_VARIABLE FLAGS COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
must(${CXX} -std=c++20 ${CONSUMER}/main.cpp ${FLAGS} -o ${WORK}/pkg-config-consumer)
must_tell_version(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${LIB_DIR} ${WORK}/pkg-config-consumer)
