# Helper functions of the build.

# Compiles through ccache when it is there.
function(megset_use_ccache)
  find_program(CCACHE_PROGRAM ccache)
  if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # The sloppiness is what ccache asks for before it takes files that use a precompiled header.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
                                    ${CCACHE_PROGRAM} PARENT_SCOPE)
  endif()
endfunction()

# Warnings, sanitizers and the rules of arithmetic, which hold for every target of the project.
function(megset_target_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off)
  if(MEGSET_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(MEGSET_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${MEGSET_SANITIZE} -fno-omit-frame-pointer
                                             -fno-sanitize-recover=all)
    target_link_options(${target} PUBLIC -fsanitize=${MEGSET_SANITIZE})
  endif()
endfunction()

# For programs and tests, of which compile time matters more than run time outside release builds.
function(megset_target_compiles_quickly target)
  target_compile_options(${target} PRIVATE "$<$<NOT:$<CONFIG:Release>>:-O0;-g1>")
  if(MEGSET_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=undefined)
  endif()
endfunction()

# Compiles the sources of a target several at a time, for what they include takes most of their time: sources of one folder,
# eight to a batch. Names in a source's unnamed namespace must therefore differ from those of its neighbours. Sources after
# ALONE, paths below the target's folder, stay by themselves.
function(megset_target_in_batches target)
  cmake_parse_arguments(arg "" "" "ALONE" ${ARGN})
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  foreach(file ${arg_ALONE})
    list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${MEGSET_BATCHES} UNITY_BUILD_MODE GROUP)
  foreach(source ${sources})
    cmake_path(GET source PARENT_PATH folder)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    string(MAKE_C_IDENTIFIER "${folder}" folder)
    if(NOT DEFINED count_${folder})
      set(count_${folder} 0)
    endif()
    math(EXPR batch "${count_${folder}} / 8")
    math(EXPR count_${folder} "${count_${folder}} + 1")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${folder}_${batch}")
  endforeach()
endfunction()

# What the sanitizers are told when a test runs: allocation that fails gives null, as it does without them.
set(MEGSET_SANITIZER_ENVIRONMENT
    "ASAN_OPTIONS=allocator_may_return_null=1:detect_leaks=1:detect_stack_use_after_return=1"
    "UBSAN_OPTIONS=print_stacktrace=1")
