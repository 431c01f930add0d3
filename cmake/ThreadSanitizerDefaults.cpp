// Suppressions of the thread sanitizer, linked into each of our programs when it is built with it, so that a child
// process with an environment of its own knows it too.

extern "C" const char* __tsan_default_suppressions();

// These libraries hand memory and messages between threads under locks of their own, which the sanitizer does not see
// because they are not built with it.
extern "C" const char* __tsan_default_suppressions() {
  return "race:libglib-2.0.so\n"
         "race:libgobject-2.0.so\n"
         "race:libgio-2.0.so\n"
         "race:libsecret-1.so\n"
         "race:libsdbus-c++.so\n"
         "race:libsystemd.so\n";
}
