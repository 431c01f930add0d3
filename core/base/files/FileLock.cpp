#include "core/base/files/FileLock.h"

#include "core/base/text/UnicodeText.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <thread>

namespace orvane {
namespace {

using namespace std::chrono_literals;

constexpr int operationFor(FileLock::Mode mode) {
  return (mode == FileLock::Mode::exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB;
}

// The process that the file names; empty where it names none. Anybody may have written it.
std::string holderOf(int descriptor) {
  std::array<char, 16> text{};
  const auto length = ::pread(descriptor, text.data(), text.size(), 0);
  const std::string_view name(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  const auto digits = name.substr(0, name.find('\n'));
  const bool isNumber = std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
  return isNumber ? std::string(digits) : std::string();
}

// Only for people to read: a full disk does not matter.
void nameHolder(int descriptor) noexcept {
  const auto text = fmt::format("{}\n", ::getpid());
  if (::ftruncate(descriptor, 0) == 0) static_cast<void>(!::pwrite(descriptor, text.data(), text.size(), 0));
}

}  // namespace

LockTimeout::LockTimeout(const std::string& path, const std::string& holder)
    : std::system_error(std::make_error_code(std::errc::device_or_resource_busy)),
      m_text(fmt::format("{} keeps '{}' locked", holder.empty() ? "another process" : "process " + holder,
                         escapedForDisplay(path))) {}

FileLock FileLock::acquire(const std::string& path, std::chrono::milliseconds wait, Mode mode) {
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600));
  if (!file) throwErrno();
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) throwErrno();
  if (!S_ISREG(status.st_mode)) throwErrno(EINVAL);
  const auto deadline = std::chrono::steady_clock::now() + wait;
  auto pause = 1ms;
  while (::flock(file.get(), operationFor(mode)) != 0) {
    if (errno != EINTR && errno != EWOULDBLOCK) throwErrno();
    const auto now = std::chrono::steady_clock::now();
    if (now >= deadline) throw LockTimeout(path, holderOf(file.get()));
    std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(pause, deadline - now));
    pause = std::min(2 * pause, 50ms);
  }
  if (mode == Mode::exclusive) nameHolder(file.get());
  return FileLock(std::move(file));
}

std::optional<FileLock> FileLock::tryAcquire(FileDescriptor& descriptor, Mode mode) {
  if (::flock(descriptor.get(), operationFor(mode)) != 0) return std::nullopt;
  return FileLock(std::move(descriptor));
}

}  // namespace orvane
