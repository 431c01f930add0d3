#pragma once

// The functions defined so have the names of libc's for the linker alone: libc's own declarations stay out of the way.
#define INTERPOSE(result, name, ...)                                                                  \
  extern "C" __attribute__((visibility("default"))) result interposed_##name(__VA_ARGS__) asm(#name); \
  result interposed_##name(__VA_ARGS__)

// Takes the settings from the environment again, for a process that has been given another one.
void readSettings();
