// What the thread sanitizer is to pass over in each of our programs. It is linked into all of them when they are built
// with it, so that a child process with an environment of its own knows it too.

extern "C" const char* __tsan_default_suppressions();

// GLib hands memory and messages between threads under locks of its own, which the sanitizer does not see because the
// library is not built with it.
extern "C" const char* __tsan_default_suppressions() {
  return "race:libglib-2.0.so\n"
         "race:libgobject-2.0.so\n"
         "race:libgio-2.0.so\n"
         "race:libsecret-1.so\n";
}
