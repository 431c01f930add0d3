#include "core/base/files/FileDescriptor.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/platform/SystemReport.h"
#include "platform/SystemServices.h"
#include "platform/linux/BusProxy.h"
#include "platform/linux/LinuxTrash.h"
#include "platform/posix/TimeLimit.h"

#include <fmt/format.h>
#include <linux/magic.h>
#include <sys/statfs.h>
#include <sys/utsname.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

constexpr std::chrono::milliseconds busTime{2000};
constexpr std::size_t maxReleaseBytes = 64 * 1024;

struct NamedService {
  std::string_view name;
  std::string_view busName;
};
constexpr std::array services{
    NamedService{"key ring", "org.freedesktop.secrets"},
    NamedService{"notifications", "org.freedesktop.Notifications"},
    NamedService{"service manager", "org.freedesktop.systemd1"},
    NamedService{"desktop portal", "org.freedesktop.portal.Desktop"},
};

struct FileSystemKind {
  std::uint32_t magic;
  std::string_view name;
};
constexpr std::array fileSystems{
    FileSystemKind{EXT4_SUPER_MAGIC, "ext2, ext3 or ext4"},
    FileSystemKind{BTRFS_SUPER_MAGIC, "btrfs"},
    FileSystemKind{XFS_SUPER_MAGIC, "xfs"},
    FileSystemKind{TMPFS_MAGIC, "tmpfs"},
    FileSystemKind{OVERLAYFS_SUPER_MAGIC, "overlay"},
    FileSystemKind{NFS_SUPER_MAGIC, "nfs"},
    FileSystemKind{F2FS_SUPER_MAGIC, "f2fs"},
    FileSystemKind{ECRYPTFS_SUPER_MAGIC, "ecryptfs"},
    FileSystemKind{FUSE_SUPER_MAGIC, "fuse"},
    FileSystemKind{0x2fc12fc1, "zfs"},
};

// PRETTY_NAME of os-release(5).
std::string systemName() {
  constexpr std::string_view key = "PRETTY_NAME=";
  try {
    const auto text = "\n" + readFile("/etc/os-release", maxReleaseBytes);
    auto at = text.find("\n" + std::string(key));
    if (at == std::string::npos) return "unknown";
    at += key.size() + 1;
    auto value = text.substr(at, text.find('\n', at) - at);
    std::erase(value, '"');
    return value;
  } catch (const std::system_error&) {
    return "unknown";
  }
}

std::string kernelName() {
  utsname name{};
  if (::uname(&name) != 0) return "unknown";
  return fmt::format("{} {}, {}", &name.sysname[0], &name.release[0], &name.machine[0]);
}

std::string desktopName() {
  std::string result;
  for (const char* variable : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE"}) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value == '\0') continue;
    result += (result.empty() ? "" : ", ") + std::string(value);
  }
  return result;
}

std::string fileSystemOf(const std::string& folder) {
  struct statfs status {};
  if (::statfs(folder.c_str(), &status) != 0) return "unknown";
  const auto magic = static_cast<std::uint32_t>(status.f_type);
  const auto* const found = std::ranges::find(fileSystems, magic, &FileSystemKind::magic);
  return found == fileSystems.end() ? fmt::format("{:#x}", magic) : std::string(found->name);
}

struct BusNames {
  std::vector<std::string> running;
  std::vector<std::string> startable;
};

BusNames askBus() {
  BusNames names;
  const auto connection = sdbus::createSessionBusConnection();
  const auto bus = makeBusProxy(*connection, "org.freedesktop.DBus", "/org/freedesktop/DBus");
  constexpr auto interface = "org.freedesktop.DBus";
  bus->callMethod("ListNames").onInterface(interface).withTimeout(busTime).storeResultsTo(names.running);
  bus->callMethod("ListActivatableNames").onInterface(interface).withTimeout(busTime).storeResultsTo(names.startable);
  return names;
}

// Absent where no bus answers.
std::optional<BusNames> busNames() {
  try {
    return finishedWithin<BusNames>(2 * busTime, askBus);
  } catch (const sdbus::Error&) {
    return std::nullopt;
  }
}

SystemReport::State stateOf(std::string_view busName, const std::optional<BusNames>& names) {
  if (!names) return SystemReport::State::absent;
  const auto has = [&](const auto& list) { return std::ranges::find(list, busName) != list.end(); };
  if (has(names->running)) return SystemReport::State::running;
  return has(names->startable) ? SystemReport::State::startable : SystemReport::State::absent;
}

}  // namespace

SystemReport systemReport() {
  SystemReport report{.system = systemName(),
                      .kernel = kernelName(),
                      .desktop = desktopName(),
                      .homeFileSystem = fileSystemOf(homeFolder()),
                      .trashFolder = LinuxTrash::defaultHomeTrash(),
                      .hasMessageBus = false,
                      .services = {}};
  const auto names = busNames();
  report.hasMessageBus = names.has_value();
  for (const auto& [name, busName] : services) {
    report.services.push_back({std::string(name), stateOf(busName, names)});
  }
  return report;
}

}  // namespace orvane
