# Entries of ctest for a program of tests. A test has an entry, and so a process, of its own; the values of a suite with
# parameters share one, as starting the program costs more than most of them, but for the suites that match `APART` (a
# regular expression): those that take long, so that processors share them.

function(orvane_discover_tests target)
  cmake_parse_arguments(PARSE_ARGV 1 option "" "APART" "")
  set(entries "${CMAKE_CURRENT_BINARY_DIR}/${target}_entries.cmake")
  add_custom_command(TARGET ${target} POST_BUILD BYPRODUCTS "${entries}" VERBATIM
    COMMAND "${CMAKE_COMMAND}" -D "program=$<TARGET_FILE:${target}>" -D "entries=${entries}" -D "apart=${option_APART}"
            -P "${PROJECT_SOURCE_DIR}/cmake/TestSuites.cmake")
  set(include_file "${CMAKE_CURRENT_BINARY_DIR}/${target}_include.cmake")
  file(WRITE "${include_file}"
    "include(\"${entries}\" OPTIONAL RESULT_VARIABLE found)\n"
    "if(NOT found)\n  add_test(${target}_NOT_BUILT ${target}_NOT_BUILT)\nendif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${include_file}")
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE OR NOT DEFINED program)
  return()
endif()

# After each build of the program: writes the file that ctest reads.
execute_process(COMMAND "${program}" --gtest_list_tests OUTPUT_VARIABLE listed COMMAND_ERROR_IS_FATAL ANY)
# Values are shown behind the names.
string(REGEX REPLACE " +# [^\n]*" "" listed "${listed}")
string(REGEX MATCHALL "[^\n]+" lines "${listed}")
cmake_path(GET program PARENT_PATH folder)
set(skipped "\\[  SKIPPED \\]")
set(text "")
foreach(line IN LISTS lines)
  set(entry "")
  if(line MATCHES "^([^ ]+)\\.$")
    set(suite "${CMAKE_MATCH_1}")
    set(is_whole FALSE)
    if(suite MATCHES "/" AND (apart STREQUAL "" OR NOT suite MATCHES "${apart}"))
      set(is_whole TRUE)
      set(entry "${suite}")
      set(filter "${suite}.*")
    endif()
  elseif(line MATCHES "^  ([^ ]+)$" AND NOT is_whole)
    set(entry "${suite}.${CMAKE_MATCH_1}")
    set(filter "${entry}")
  endif()
  if(NOT entry STREQUAL "")
    string(APPEND text "add_test([=[${entry}]=] \"${program}\" \"--gtest_filter=${filter}\")\n"
                       "set_tests_properties([=[${entry}]=] PROPERTIES WORKING_DIRECTORY \"${folder}\"")
    # One of many tests that does not apply says nothing of the others.
    if(NOT is_whole)
      string(APPEND text " SKIP_REGULAR_EXPRESSION [=[${skipped}]=]")
    endif()
    # Begun early: ctest knows by itself how long a test takes only once it has run.
    if(NOT apart STREQUAL "" AND suite MATCHES "${apart}")
      string(APPEND text " COST 10")
    endif()
    string(APPEND text ")\n")
  endif()
endforeach()
file(WRITE "${entries}" "${text}")
