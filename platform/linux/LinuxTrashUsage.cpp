#include "platform/linux/LinuxTrashUsage.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/files/PathText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/uninstaller/ContentSizes.h"
#include "platform/linux/TrashInfo.h"
#include "platform/posix/TimeLimit.h"

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
#include <vector>

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

// Kinds whose files lie on another machine; "fuse.sshfs" and its like are told by their beginning.
constexpr auto ofOtherMachines = std::to_array<std::string_view>(
    {"nfs", "nfs4", "cifs", "smb3", "9p", "afs", "ceph", "davfs", "glusterfs", "virtiofs"});

struct TrashMount {
  std::string top;
  bool isRemote;
};

std::vector<TrashMount> mounts() {
  std::vector<TrashMount> result;
  const std::unique_ptr<FILE, int (*)(FILE*)> table(::setmntent("/proc/self/mounts", "re"), ::endmntent);
  mntent entry{};
  std::array<char, 8192> buffer{};
  while (table && ::getmntent_r(table.get(), &entry, buffer.data(), buffer.size()) != nullptr) {
    const std::string_view type = entry.mnt_type;
    if (std::ranges::find(withoutFiles, type) != withoutFiles.end()) continue;
    const bool isRemote = type == "fuse" || type.starts_with("fuse.") ||
                          std::ranges::find(ofOtherMachines, type) != ofOtherMachines.end();
    result.push_back({entry.mnt_dir, isRemote});
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

struct TrashPlace {
  std::string path;
  std::pair<std::uint64_t, std::uint64_t> identity;  // a mount that is there twice has one folder
};

std::optional<TrashPlace> placeAt(const std::string& folder) {
  const auto status = isUsersFolder(folder) ? readFileStatus(AT_FDCWD, folder.c_str()) : std::nullopt;
  if (!status) return std::nullopt;
  return TrashPlace{folder, {status->device, status->inode}};
}

std::vector<TrashPlace> placesAt(const std::string& top) {
  const auto user = std::to_string(::geteuid());
  std::vector<TrashPlace> found;
  for (const auto& name : {".Trash/" + user, ".Trash-" + user}) {
    if (auto place = placeAt(joinPath(top, name))) found.push_back(*std::move(place));
  }
  return found;
}

TrashUsage::Totals contentOf(const std::string& folder, const std::stop_token& stop) {
  TrashUsage::Totals totals;
  std::vector<FileUrl> items;
  const auto files = joinPath(folder, "files");
  const auto info = DirectoryReader::open(AT_FDCWD, joinPath(folder, "info").c_str(), DirectoryReader::Links::refuse);
  auto reader = DirectoryReader::open(AT_FDCWD, files.c_str(), DirectoryReader::Links::refuse);
  while (const auto entry = reader ? reader->next() : std::nullopt) {
    if (stop.stop_requested()) return totals;
    items.emplace_back(joinPath(files, entry->name));
    const auto date = info ? dateOf(info->descriptor(), std::string(entry->name).append(recordEnding)) : std::nullopt;
    if (date && (!totals.oldest || *date < *totals.oldest)) totals.oldest = date;
  }
  totals.count = std::ssize(items);
  for (const auto bytes : contentSizes(items, stop)) totals.bytes = checkedAdd(totals.bytes, bytes);
  return totals;
}

void add(TrashUsage::Totals& sum, const TrashUsage::Totals& other) {
  sum.count += other.count;
  sum.bytes = checkedAdd(sum.bytes, other.bytes);
  if (other.oldest && (!sum.oldest || *other.oldest < *sum.oldest)) sum.oldest = other.oldest;
}

}  // namespace

template <typename Answer>
std::optional<Answer> LinuxTrashUsage::answerOf(const std::string& top, std::chrono::milliseconds limit,
                                                std::function<Answer()> look) const {
  auto isWaitedFor = std::make_shared<std::atomic<bool>>(true);
  {
    const std::lock_guard lock(m_mutex);
    auto& last = m_isWaitedFor[top];
    if (last && *last) return std::nullopt;
    last = isWaitedFor;
  }
  std::shared_ptr<void> end(nullptr, [isWaitedFor](void*) { *isWaitedFor = false; });
  return finishedWithin<Answer>(limit, [end = std::move(end), look = std::move(look)] { return look(); });
}

TrashUsage::Totals LinuxTrashUsage::read(const std::stop_token& stop) const {
  Totals totals;
  std::set<std::pair<std::uint64_t, std::uint64_t>> seen;
  if (const auto home = placeAt(m_homeTrash)) {
    seen.insert(home->identity);
    add(totals, contentOf(home->path, stop));
  }
  for (const auto& [top, isRemote] : mounts()) {
    if (stop.stop_requested()) return totals;
    const auto trashes = answerOf<std::vector<TrashPlace>>(top, m_patience.look, [top = top] { return placesAt(top); });
    if (!trashes) ++totals.unansweredDisks;
    for (const auto& place : trashes.value_or(std::vector<TrashPlace>())) {
      if (!seen.insert(place.identity).second) continue;
      const auto look = [path = place.path, stop] { return contentOf(path, stop); };
      const auto content = isRemote ? answerOf<Totals>(top, m_patience.content, look) : look();
      if (content) add(totals, *content);
      if (!content) ++totals.unansweredDisks;
    }
  }
  return totals;
}

}  // namespace orvane
