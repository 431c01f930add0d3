# Warnings and sanitizers as interface targets, linked by every target of this project.

add_library(orvane_warnings INTERFACE)
target_compile_options(orvane_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(ORVANE_WERROR)
  target_compile_options(orvane_warnings INTERFACE -Werror)
endif()

add_library(orvane_sanitizers INTERFACE)
if(ORVANE_SANITIZE)
  target_compile_options(orvane_sanitizers INTERFACE -fsanitize=${ORVANE_SANITIZE} -fno-omit-frame-pointer
                                                     -fno-sanitize-recover=all)
  target_link_options(orvane_sanitizers INTERFACE -fsanitize=${ORVANE_SANITIZE})
endif()
