#pragma once

namespace orvane {

// A shared library that is loaded when it is first needed, and stays: most starts need none of these, and each brings
// others along. Nothing links to it, so the package names it as a dependency by hand.
class LoadedLibrary {
 public:
  // Throws std::runtime_error where it cannot be loaded.
  explicit LoadedLibrary(const char* name);

  // A function of the library or of one that it needs. Throws std::runtime_error where none has this name.
  template <typename Function>
  void find(const char* name, Function& function) const {
    function = reinterpret_cast<Function>(address(name));
  }

 private:
  [[nodiscard]] void* address(const char* name) const;

  void* m_library;
};

}  // namespace orvane
