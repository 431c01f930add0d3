#include "core/base/values/LoadedLibrary.h"

#include <dlfcn.h>

#include <stdexcept>

namespace orvane {

LoadedLibrary::LoadedLibrary(const char* name) : m_library(::dlopen(name, RTLD_NOW | RTLD_LOCAL)) {
  if (m_library == nullptr) throw std::runtime_error(::dlerror());
}

void* LoadedLibrary::address(const char* name) const {
  void* const found = ::dlsym(m_library, name);
  if (found == nullptr) throw std::runtime_error(::dlerror());
  return found;
}

}  // namespace orvane
