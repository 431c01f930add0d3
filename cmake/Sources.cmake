# orvane_find_sources(VARIABLE PATTERN...): the files of the current folder and all below it whose names match, in the order
# of their names; `rooms/*.cpp` are those of one folder. A file that comes or goes is seen by the next build.
function(orvane_find_sources variable)
  file(GLOB_RECURSE found LIST_DIRECTORIES OFF RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" CONFIGURE_DEPENDS ${ARGN})
  set(${variable} ${found} PARENT_SCOPE)
endfunction()
