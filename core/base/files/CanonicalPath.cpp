#include "core/base/files/CanonicalPath.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "core/base/files/SearchFlags.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace orvane {
namespace {

// As in path_resolution(7).
constexpr int maxLinks = 40;

std::optional<std::string> existingRealPath(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr), std::free);
  if (!resolved) return std::nullopt;
  return std::string(resolved.get());
}

// Resolves component by component, relative to an open folder so that no call sees a long path.
class Resolver {
 public:
  std::string resolve(std::string_view path) {
    push(path);
    while (!m_pending.empty()) {
      const std::string component = std::move(m_pending.back());
      m_pending.pop_back();
      step(component);
    }
    return m_resolved.empty() ? "/" : m_resolved;
  }

 private:
  // Components are kept in reverse, so that a link's target goes in front of what follows it.
  void push(std::string_view path) {
    std::vector<std::string> components;
    std::size_t start = 0;
    while (start < path.size()) {
      auto end = path.find('/', start);
      if (end == std::string_view::npos) end = path.size();
      if (end > start) components.emplace_back(path.substr(start, end - start));
      start = end + 1;
    }
    m_pending.insert(m_pending.end(), components.rbegin(), components.rend());
  }

  void step(const std::string& component) {
    if (component == ".") return;
    if (component == "..") {
      m_resolved = std::string(parentPath(m_resolved));
      if (m_resolved == "/") m_resolved.clear();
      reopen();
      return;
    }
    if (m_followed < maxLinks) {
      if (const auto target = readLink(component)) {
        ++m_followed;
        if (target->starts_with('/')) {
          m_resolved.clear();
          reopen();
        }
        push(*target);
        return;
      }
    }
    m_resolved += '/';
    m_resolved += component;
    if (m_folder) {
      m_folder = FileDescriptor(::openat(m_folder.get(), component.c_str(), folderSearchFlags));
    }
  }

  [[nodiscard]] std::optional<std::string> readLink(const std::string& component) const {
    if (!m_folder) return std::nullopt;
    std::string target(4096, '\0');
    const auto length = ::readlinkat(m_folder.get(), component.c_str(), target.data(), target.size());
    if (length <= 0) return std::nullopt;
    target.resize(static_cast<std::size_t>(length));
    return target;
  }

  // Opens the folder that has been resolved so far; without one nothing below it can be a link.
  void reopen() {
    m_folder = FileDescriptor(::open("/", folderSearchFlags));
    std::size_t start = 1;
    while (m_folder && start < m_resolved.size()) {
      auto end = m_resolved.find('/', start);
      if (end == std::string::npos) end = m_resolved.size();
      const std::string component = m_resolved.substr(start, end - start);
      m_folder = FileDescriptor(::openat(m_folder.get(), component.c_str(), folderSearchFlags));
      start = end + 1;
    }
  }

  std::vector<std::string> m_pending;
  std::string m_resolved;
  FileDescriptor m_folder{::open("/", folderSearchFlags)};
  int m_followed = 0;
};

std::string absolutePath(std::string_view path) {
  if (path.starts_with('/')) return std::string(path);
  const std::unique_ptr<char, void (*)(void*)> current(::getcwd(nullptr, 0), std::free);
  return joinPath(current ? current.get() : "/", path);
}

}  // namespace

std::string canonicalPath(std::string_view path) {
  if (path.empty()) return {};
  const std::string absolute = absolutePath(path);
  if (auto resolved = existingRealPath(absolute)) return *std::move(resolved);
  return Resolver().resolve(absolute);
}

std::string canonicalPlace(std::string_view path) {
  const auto name = lastComponent(path);
  if (name.empty() || name == "." || name == "..") return canonicalPath(path);
  const std::string absolute = absolutePath(path);
  return joinPath(canonicalPath(parentPath(absolute)), name);
}

}  // namespace orvane
