#include "app/shell/WaylandSeat.h"

#include "core/base/files/FileDescriptor.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {
namespace {

constexpr auto moduleVariable = "QT_IM_MODULE";
constexpr auto moduleWithoutSeat = "compose";
constexpr timeval answerTime{.tv_sec = 2, .tv_usec = 0};
constexpr std::size_t maxBytes = 1UL << 20;

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

bool usesWayland() {
  const auto platform = variable("QT_QPA_PLATFORM");
  if (!platform.empty()) return platform.starts_with("wayland");
  return !variable("WAYLAND_DISPLAY").empty() &&
         (variable("XDG_SESSION_TYPE") == "wayland" || variable("DISPLAY").empty());
}

FileDescriptor connectToCompositor() {
  auto name = variable("WAYLAND_DISPLAY");
  if (name.empty()) name = "wayland-0";
  const auto path = name.starts_with('/') ? name : variable("XDG_RUNTIME_DIR") + "/" + name;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof(address.sun_path)) return {};
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket) return {};
  setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &answerTime, sizeof(answerTime));
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  return connect(socket.get(), generic, sizeof(address)) == 0 ? std::move(socket) : FileDescriptor();
}

std::uint32_t wordAt(std::span<const char> bytes, std::size_t at) {
  std::uint32_t word = 0;
  std::memcpy(&word, bytes.data() + at, sizeof(word));
  return word;
}

// Asks for the compositor's globals and for an answer after them, and looks for a seat among them. Absent where nothing
// answers. The protocol's messages are words in the machine's order: object, size << 16 | operation, arguments.
std::optional<bool> hasSeat(int socket) {
  constexpr std::uint32_t display = 1;
  constexpr std::uint32_t registry = 2;
  constexpr std::uint32_t callback = 3;
  constexpr std::array<std::uint32_t, 6> question{display, (12U << 16U) | 1U, registry,
                                                  display, (12U << 16U) | 0U, callback};
  if (write(socket, question.data(), sizeof(question)) != static_cast<ssize_t>(sizeof(question))) return {};
  constexpr std::size_t headSize = 8;
  constexpr std::string_view seat("wl_seat\0", 8);
  std::vector<char> bytes;
  std::size_t at = 0;
  std::array<char, 4096> piece{};
  while (bytes.size() < maxBytes) {
    const auto count = read(socket, piece.data(), piece.size());
    if (count <= 0) return {};
    bytes.insert(bytes.end(), piece.begin(), piece.begin() + count);
    while (bytes.size() - at >= headSize) {
      const auto object = wordAt(bytes, at);
      const auto size = wordAt(bytes, at + 4) >> 16U;
      if (size < headSize) return {};
      if (bytes.size() - at < size) break;
      if (object == callback) return false;
      // A global: its name, the length of its interface, the interface.
      const std::string_view message(bytes.data() + at, size);
      if (object == registry && message.find(seat) != std::string_view::npos) return true;
      at += size;
    }
  }
  return {};
}

}  // namespace

void chooseInputModuleForWayland() {
  if (!usesWayland() || !variable(moduleVariable).empty()) return;
  const auto socket = connectToCompositor();
  if (socket && hasSeat(socket.get()) == false) ::setenv(moduleVariable, moduleWithoutSeat, 1);
}

}  // namespace orvane
