#include "platform/linux/LinuxTrashUsage.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/files/PathText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/uninstaller/ContentSizes.h"
#include "platform/linux/TrashInfo.h"

#include <fcntl.h>
#include <mntent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view recordEnding = ".trashinfo";
constexpr std::size_t longestRecord = 64 * 1024;

// Kinds of file systems that hold nobody's files. One that is mounted on demand must not be by a look.
constexpr auto withoutFiles = std::to_array<std::string_view>({
    "autofs", "binfmt_misc", "bpf",        "cgroup",     "cgroup2",  "configfs", "debugfs",
    "devpts", "efivarfs",    "fusectl",    "hugetlbfs",  "mqueue",   "nsfs",     "proc",
    "pstore", "ramfs",       "rpc_pipefs", "securityfs", "squashfs", "sysfs",    "tracefs",
});

std::vector<std::string> mountPoints() {
  std::vector<std::string> result;
  const std::unique_ptr<FILE, int (*)(FILE*)> mounts(::setmntent("/proc/self/mounts", "re"), ::endmntent);
  mntent entry{};
  std::array<char, 8192> buffer{};
  while (mounts && ::getmntent_r(mounts.get(), &entry, buffer.data(), buffer.size()) != nullptr) {
    if (std::ranges::find(withoutFiles, entry.mnt_type) == withoutFiles.end()) result.emplace_back(entry.mnt_dir);
  }
  return result;
}

bool isUsersFolder(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
}

std::optional<Date> dateOf(int info, const std::string& name) {
  const FileDescriptor record(::openat(info, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!record) return std::nullopt;
  try {
    return trashInfoDate(readAll(record.get(), longestRecord));
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

}  // namespace

// A mount that is there twice has one folder.
std::vector<std::string> LinuxTrashUsage::folders() const {
  const auto user = std::to_string(::geteuid());
  std::vector<std::string> candidates{m_homeTrash};
  for (const auto& top : mountPoints()) {
    candidates.push_back(joinPath(top, ".Trash/" + user));
    candidates.push_back(joinPath(top, ".Trash-" + user));
  }
  std::set<std::pair<std::uint64_t, std::uint64_t>> seen;
  std::erase_if(candidates, [&](const std::string& folder) {
    if (!isUsersFolder(folder)) return true;
    const auto status = readFileStatus(AT_FDCWD, folder.c_str());
    return !status || !seen.emplace(status->device, status->inode).second;
  });
  return candidates;
}

TrashUsage::Totals LinuxTrashUsage::read(const std::stop_token& stop) const {
  Totals totals;
  std::vector<FileUrl> items;
  for (const auto& folder : folders()) {
    const auto files = joinPath(folder, "files");
    const auto info = DirectoryReader::open(AT_FDCWD, joinPath(folder, "info").c_str(), DirectoryReader::Links::refuse);
    auto reader = DirectoryReader::open(AT_FDCWD, files.c_str(), DirectoryReader::Links::refuse);
    while (const auto entry = reader ? reader->next() : std::nullopt) {
      if (stop.stop_requested()) return totals;
      items.emplace_back(joinPath(files, entry->name));
      const auto date = info ? dateOf(info->descriptor(), std::string(entry->name).append(recordEnding)) : std::nullopt;
      if (date && (!totals.oldest || *date < *totals.oldest)) totals.oldest = date;
    }
  }
  totals.count = std::ssize(items);
  for (const auto bytes : contentSizes(items, stop)) totals.bytes = checkedAdd(totals.bytes, bytes);
  return totals;
}

}  // namespace orvane
