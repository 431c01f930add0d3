# Warnings and sanitizers as interface targets, linked by every target of this project.

add_library(orvane_warnings INTERFACE)
# Clang takes the constants of other sources that are compiled with one for names that it shadows.
target_compile_options(orvane_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion
                                                 $<$<CXX_COMPILER_ID:GNU>:-Wshadow>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 takes "text" + string in C++20 for an overlapping copy once it optimises (its bug 105651).
  target_compile_options(orvane_warnings INTERFACE $<$<CONFIG:Release>:-Wno-restrict -Wno-stringop-overflow -Wno-array-bounds>)
endif()
if(ORVANE_WERROR)
  target_compile_options(orvane_warnings INTERFACE -Werror)
endif()

add_library(orvane_sanitizers INTERFACE)
if(ORVANE_SANITIZE)
  target_compile_options(orvane_sanitizers INTERFACE -fsanitize=${ORVANE_SANITIZE} -fno-omit-frame-pointer
                                                     -fno-sanitize-recover=all)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND ORVANE_SANITIZE MATCHES undefined)
    # It probes memory by writing it to a pipe, and asks again forever in a test that lets every write fail.
    target_compile_options(orvane_sanitizers INTERFACE -fno-sanitize=vptr)
  endif()
  target_link_options(orvane_sanitizers INTERFACE -fsanitize=${ORVANE_SANITIZE})
endif()
if(ORVANE_SANITIZE MATCHES thread)
  add_library(orvane_sanitizer_defaults OBJECT ${CMAKE_CURRENT_LIST_DIR}/ThreadSanitizerDefaults.cpp)
  target_sources(orvane_sanitizers INTERFACE $<TARGET_OBJECTS:orvane_sanitizer_defaults>)
endif()
