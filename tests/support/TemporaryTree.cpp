#include "tests/support/TemporaryTree.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"

#include <cstdlib>

namespace orvane::test {

TemporaryTree::TemporaryTree(const std::string& base) {
  const char* temporary = std::getenv("TMPDIR");
  const std::string parent = !base.empty() ? base : temporary != nullptr ? temporary : "/tmp";
  std::string pattern = joinPath(fs::canonical(parent).string(), "orvane-test-XXXXXX");
  if (::mkdtemp(pattern.data()) == nullptr) throwErrno();
  m_path = pattern;
}

TemporaryTree::~TemporaryTree() {
  std::error_code ignored;
  fs::remove_all(m_path, ignored);
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

std::stop_token stopped() {
  static std::stop_source source;
  source.request_stop();
  return source.get_token();
}

bool exists(const std::string& path) {
  return itemExists(path.c_str());
}

struct stat statusOf(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) throwErrno();
  return status;
}

std::vector<std::string> filesBelow(const std::string& folder) {
  std::vector<std::string> result;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_directory()) result.push_back(entry.path().string().substr(folder.size() + 1));
  }
  std::ranges::sort(result);
  return result;
}

std::map<std::string, std::string> contentsBelow(const std::string& folder) {
  std::map<std::string, std::string> result;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const auto path = entry.path().string();
    auto& content = result[path.substr(folder.size() + 1)];
    if (entry.is_symlink()) {
      content = "-> " + fs::read_symlink(path).string();
    } else {
      content = entry.is_directory() ? "/" : contentOf(path);
    }
  }
  return result;
}

std::string contentOf(const std::string& path) {
  return readFile(path);
}

void writeAt(const std::string& path, std::int64_t offset, std::string_view text) {
  const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  if (::pwrite(file.get(), text.data(), text.size(), offset) != static_cast<ssize_t>(text.size())) throwErrno();
}

FileDescriptor nestedFolders(const std::string& top, const std::string& name, int depth) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  FileDescriptor folder(::open(top.c_str(), flags));
  for (int level = 0; level < depth; ++level) {
    if (::mkdirat(folder.get(), name.c_str(), 0755) != 0) throwErrno();
    folder = FileDescriptor(::openat(folder.get(), name.c_str(), flags));
  }
  return folder;
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
