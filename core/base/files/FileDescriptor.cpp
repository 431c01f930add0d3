#include "core/base/files/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace orvane {

void FileDescriptor::reset(int descriptor) noexcept {
  if (m_descriptor >= 0) {
    const int savedError = errno;
    ::close(m_descriptor);
    errno = savedError;
  }
  m_descriptor = descriptor;
}

void writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0) {
      if (errno == EINTR) continue;
      throwErrno();
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::size_t readSome(int descriptor, std::span<char> place) {
  while (true) {
    const auto count = ::read(descriptor, place.data(), place.size());
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) throwErrno();
  }
}

std::string readAll(int descriptor, std::size_t limit) {
  std::string result;
  struct stat status {};
  if (::fstat(descriptor, &status) == 0 && status.st_size > 0) {
    result.reserve(std::min(static_cast<std::size_t>(status.st_size) + 1, limit));
  }
  std::string block(128 * 1024, '\0');
  while (const auto count = readSome(descriptor, block)) {
    if (result.size() + count > limit) throwErrno(EFBIG);
    result.append(block, 0, count);
  }
  return result;
}

FileDescriptor openRegularFile(const std::string& path) {
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) throwErrno();
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) throwErrno();
  if (S_ISDIR(status.st_mode)) throwErrno(EISDIR);
  if (!S_ISREG(status.st_mode)) throwErrno(EINVAL);
  return file;
}

std::string readFile(const std::string& path, std::size_t limit) {
  const auto file = openRegularFile(path);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) throwErrno();
  if (status.st_size > 0 && static_cast<std::size_t>(status.st_size) > limit) throwErrno(EFBIG);
  return readAll(file.get(), limit);
}

void throwErrno() {
  throwErrno(errno);
}

void throwErrno(int error) {
  throw std::system_error(error, std::generic_category());
}

std::string errorText(int error) {
  return std::generic_category().message(error);
}

}  // namespace orvane
