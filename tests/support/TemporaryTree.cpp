#include "tests/support/TemporaryTree.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace orvane::test {

TemporaryTree::TemporaryTree(const std::string& base) {
  const char* temporary = std::getenv("TMPDIR");
  const std::string parent = !base.empty() ? base : temporary != nullptr ? temporary : "/tmp";
  std::string pattern = joinPath(std::filesystem::canonical(parent).string(), "orvane-test-XXXXXX");
  if (::mkdtemp(pattern.data()) == nullptr) throwErrno();
  m_path = pattern;
}

TemporaryTree::~TemporaryTree() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryTree::path(std::string_view relative) const {
  return relative.empty() ? m_path : joinPath(m_path, relative);
}

FileUrl TemporaryTree::url(std::string_view relative) const {
  return FileUrl(path(relative));
}

std::string TemporaryTree::file(std::string_view relative, std::string_view content) const {
  const std::string result = path(relative);
  createFolders(std::string(parentPath(result)), 0755);
  const FileDescriptor file(::open(result.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
  if (!file) throwErrno();
  writeAll(file.get(), content);
  return result;
}

std::string TemporaryTree::sparseFile(std::string_view relative, std::int64_t size) const {
  auto result = file(relative, "");
  if (::truncate(result.c_str(), size) != 0) throwErrno();
  return result;
}

std::string TemporaryTree::folder(std::string_view relative) const {
  auto result = path(relative);
  createFolders(result, 0755);
  return result;
}

void TemporaryTree::files(std::initializer_list<std::string_view> relatives) const {
  for (const auto relative : relatives) file(relative);
}

std::string TemporaryTree::pipe(std::string_view relative) const {
  auto result = path(relative);
  createFolders(std::string(parentPath(result)), 0755);
  if (::mkfifo(result.c_str(), 0600) != 0) throwErrno();
  return result;
}

std::string TemporaryTree::link(std::string_view relative, std::string_view target) const {
  auto result = path(relative);
  createFolders(std::string(parentPath(result)), 0755);
  if (::symlink(std::string(target).c_str(), result.c_str()) != 0) throwErrno();
  return result;
}

bool exists(const std::string& path) {
  return itemExists(path.c_str());
}

std::vector<std::string> filesBelow(const std::string& folder) {
  std::vector<std::string> result;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_directory()) result.push_back(entry.path().string().substr(folder.size() + 1));
  }
  std::ranges::sort(result);
  return result;
}

std::map<std::string, std::string> contentsBelow(const std::string& folder) {
  std::map<std::string, std::string> result;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const auto path = entry.path().string();
    auto& content = result[path.substr(folder.size() + 1)];
    if (entry.is_symlink()) {
      content = "-> " + std::filesystem::read_symlink(path).string();
    } else {
      content = entry.is_directory() ? "/" : contentOf(path);
    }
  }
  return result;
}

std::string contentOf(const std::string& path) {
  return readFile(path);
}

void setAge(const std::string& path, double seconds) {
  const double then = unixSeconds(ReferenceClock::now()) - seconds;
  const auto whole = static_cast<time_t>(then);
  const timespec time{whole, static_cast<long>((then - static_cast<double>(whole)) * 1e9)};
  const timespec times[2] = {time, time};
  if (::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) != 0) throwErrno();
}

ScopedEnvironment::ScopedEnvironment(std::string name, const char* value) : m_name(std::move(name)) {
  const char* old = std::getenv(m_name.c_str());
  m_wasSet = old != nullptr;
  if (m_wasSet) m_oldValue = old;
  if (value != nullptr) {
    ::setenv(m_name.c_str(), value, 1);
  } else {
    ::unsetenv(m_name.c_str());
  }
}

ScopedEnvironment::~ScopedEnvironment() {
  if (m_wasSet) {
    ::setenv(m_name.c_str(), m_oldValue.c_str(), 1);
  } else {
    ::unsetenv(m_name.c_str());
  }
}

}  // namespace orvane::test
