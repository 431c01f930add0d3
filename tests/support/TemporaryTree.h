#pragma once

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileUrl.h"
#include "tests/support/Testing.h"

namespace orvane::test {

// A fresh folder of its own for one test, removed with everything in it at the end. Its path is canonical.
class TemporaryTree {
 public:
  // Below `base`, or below $TMPDIR or /tmp when empty.
  explicit TemporaryTree(const std::string& base = {});
  ~TemporaryTree();
  TemporaryTree(const TemporaryTree&) = delete;
  TemporaryTree& operator=(const TemporaryTree&) = delete;

  [[nodiscard]] const std::string& path() const noexcept { return m_path; }
  // Path of something inside.
  [[nodiscard]] std::string path(std::string_view relative) const;
  [[nodiscard]] FileUrl url(std::string_view relative = {}) const;

  // Each makes missing parent folders and returns the path.
  std::string file(std::string_view relative, std::string_view content = "content") const;
  // A file of `size` bytes without data.
  std::string sparseFile(std::string_view relative, std::int64_t size) const;
  std::string folder(std::string_view relative) const;
  // Files with some content.
  void files(std::initializer_list<std::string_view> relatives) const;
  std::string pipe(std::string_view relative) const;
  std::string link(std::string_view relative, std::string_view target) const;

 private:
  std::string m_path;
};

[[nodiscard]] bool exists(const std::string& path);
// Of the item itself, where it is a link.
[[nodiscard]] struct stat statusOf(const std::string& path);
[[nodiscard]] std::string contentOf(const std::string& path);
// Everything below a folder that is no folder, by its path from there, sorted.
[[nodiscard]] std::vector<std::string> filesBelow(const std::string& folder);
// Every path below a folder with its content: "/" for a folder, and for a link where it leads.
[[nodiscard]] std::map<std::string, std::string> contentsBelow(const std::string& folder);
// Writes into a file that is there, without changing its length where it is long enough.
void writeAt(const std::string& path, std::int64_t offset, std::string_view text);
// Folders of one name, each in the one before; the innermost, open, whose path may be longer than a call takes.
[[nodiscard]] FileDescriptor nestedFolders(const std::string& top, const std::string& name, int depth);
// Sets access and modification time, in seconds before now.
void setAge(const std::string& path, double seconds);

// Sets an environment variable for the time of a scope; an absent value unsets it.
class ScopedEnvironment {
 public:
  ScopedEnvironment(std::string name, const char* value);
  ~ScopedEnvironment();
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  std::string m_name;
  std::string m_oldValue;
  bool m_wasSet;
};

}  // namespace orvane::test
