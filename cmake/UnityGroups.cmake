# A build from nothing spends most of its time on headers. With CMAKE_UNITY_BUILD the sources of one folder are compiled
# together, in groups that stay as they are when a file joins another folder. Names in unnamed namespaces must then differ
# within a folder. Files that cannot meet that stay by themselves, with SKIP_UNITY_BUILD_INCLUSION.

function(orvane_group_sources target)
  if(NOT CMAKE_UNITY_BUILD)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  get_target_property(top ${target} SOURCE_DIR)
  foreach(source IN LISTS sources)
    if(NOT source MATCHES "\\.cpp$" OR source MATCHES "\\$<")
      continue()
    endif()
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${top}")
    cmake_path(RELATIVE_PATH source BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE path)
    cmake_path(GET path PARENT_PATH folder)
    string(MAKE_C_IDENTIFIER "${folder}" room)
    # Eight files compile in the time of two or three, and leave enough groups for all processors.
    math(EXPR count "0${count_${room}} + 1")
    set(count_${room} ${count})
    math(EXPR part "(${count} - 1) / 8")
    set_source_files_properties(${source} DIRECTORY "${top}" PROPERTIES UNITY_GROUP "${room}_${part}")
  endforeach()
endfunction()
