# A build from nothing spends most of its time on headers. With CMAKE_UNITY_BUILD the sources of one folder are compiled
# together, in groups that stay as they are when a file joins another folder. Names in unnamed namespaces must then differ
# within a folder. Files that cannot meet that stay by themselves, with SKIP_UNITY_BUILD_INCLUSION.

# Large groups are built sooner from nothing, small ones sooner after a change of one file.
set(ORVANE_GROUP_SIZE 16 CACHE STRING "Most sources that are compiled together")

# orvane_group_sources(TARGET [OPTIONS OPTION...]): the options are for the target's own sources, not for generated ones.
function(orvane_group_sources target)
  cmake_parse_arguments(PARSE_ARGV 1 wanted "" "" OPTIONS)
  get_target_property(sources ${target} SOURCES)
  get_target_property(top ${target} SOURCE_DIR)
  get_target_property(binaries ${target} BINARY_DIR)
  if(CMAKE_UNITY_BUILD)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  endif()
  foreach(source IN LISTS sources)
    if(NOT source MATCHES "\\.cpp$" OR source MATCHES "\\$<")
      continue()
    endif()
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${top}")
    cmake_path(IS_PREFIX CMAKE_BINARY_DIR "${source}" NORMALIZE is_generated)
    if(is_generated)
      set(room generated)
    else()
      cmake_path(RELATIVE_PATH source BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE path)
      cmake_path(GET path PARENT_PATH folder)
      string(MAKE_C_IDENTIFIER "${folder}" room)
    endif()
    math(EXPR count "0${count_${room}} + 1")
    set(count_${room} ${count})
    math(EXPR part "(${count} - 1) / ${ORVANE_GROUP_SIZE}")
    set(group "${room}_${part}")
    set(compiled "${source}")
    if(CMAKE_UNITY_BUILD)
      set_source_files_properties(${source} DIRECTORY "${top}" PROPERTIES UNITY_GROUP ${group})
      # A source with options of its own would be compiled by itself: the group has them.
      set(compiled "${binaries}/CMakeFiles/${target}.dir/Unity/unity_${group}_cxx.cxx")
    endif()
    if(wanted_OPTIONS AND NOT is_generated)
      set_source_files_properties("${compiled}" DIRECTORY "${top}" PROPERTIES COMPILE_OPTIONS "${wanted_OPTIONS}")
    endif()
  endforeach()
endfunction()
