#include "platform/linux/MountedTrashes.h"

#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>
#include <mntent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <set>

namespace orvane {
namespace {

// Kinds of file systems that hold nobody's files. One that is mounted on demand must not be by a look.
constexpr auto withoutFiles = std::to_array<std::string_view>({
    "autofs", "binfmt_misc", "bpf",        "cgroup",     "cgroup2",  "configfs", "debugfs",
    "devpts", "efivarfs",    "fusectl",    "hugetlbfs",  "mqueue",   "nsfs",     "proc",
    "pstore", "ramfs",       "rpc_pipefs", "securityfs", "squashfs", "sysfs",    "tracefs",
});

// Kinds whose files lie on another machine; "fuse.sshfs" and its like are known by their beginning.
constexpr auto ofOtherMachines = std::to_array<std::string_view>(
    {"nfs", "nfs4", "cifs", "smb3", "9p", "afs", "ceph", "davfs", "glusterfs", "virtiofs"});

struct TrashMount {
  std::string top;
  bool isRemote;
};

// Of this process, unless another table is named: tests look at no disk of the machine that they run on.
std::vector<TrashMount> mounts() {
  std::vector<TrashMount> result;
  const char* const named = std::getenv("ORVANE_MOUNTS");
  const std::unique_ptr<FILE, int (*)(FILE*)> table(::setmntent(named == nullptr ? "/proc/self/mounts" : named, "re"),
                                                    ::endmntent);
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

}  // namespace

MountedTrashes::Found MountedTrashes::folders(const std::string& homeTrash, const std::stop_token& stop) const {
  Found found;
  std::set<std::pair<std::uint64_t, std::uint64_t>> seen;
  if (const auto home = placeAt(homeTrash)) {
    seen.insert(home->identity);
    found.folders.push_back({home->path, {}, false});
  }
  for (const auto& [top, isRemote] : mounts()) {
    if (stop.stop_requested()) return found;
    const auto look = [top = top] { return placesAt(top); };
    const auto places = answerInTime<std::vector<TrashPlace>>(top, m_patience.look, look);
    if (!places) ++found.unansweredMounts;
    for (const auto& [path, identity] : places.value_or(std::vector<TrashPlace>())) {
      if (seen.insert(identity).second) found.folders.push_back({path, top, isRemote});
    }
  }
  return found;
}

bool MountedTrashes::isItem(std::string_view path) {
  const auto files = parentPath(path);
  const auto folder = parentPath(files);
  if (files.size() <= folder.size() || lastComponent(files) != "files") return false;
  const auto user = std::to_string(::geteuid());
  const auto name = lastComponent(folder);
  return name == ".Trash-" + user || (name == user && lastComponent(parentPath(folder)) == ".Trash");
}

}  // namespace orvane
