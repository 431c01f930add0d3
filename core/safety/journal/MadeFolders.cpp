#include "core/safety/journal/MadeFolders.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <exception>
#include <iterator>
#include <string_view>
#include <system_error>

namespace orvane {
namespace {

constexpr std::string_view foldersFileName = "undo_journal.folders";

// Whether it was the folder, was empty and is gone.
bool removeIfStill(const std::string& path, std::uint64_t inode) {
  const std::string name(lastComponent(path));
  const auto parent = openFolderWithoutLinks(AT_FDCWD, parentPath(path));
  if (!parent) return false;
  const auto status = readFileStatus(parent.get(), name.c_str());
  const bool isStill = status && status->type == FileType::directory && status->inode == inode;
  return isStill && ::unlinkat(parent.get(), name.c_str(), AT_REMOVEDIR) == 0;
}

}  // namespace

MadeFolders::MadeFolders(const std::string& folder) : m_path(joinPath(folder, foldersFileName)) {}

void MadeFolders::append(std::span<const std::string> folders) const noexcept {
  if (folders.empty()) return;
  try {
    // The last line may have been cut short.
    std::string text = "\n";
    for (const auto& folder : folders) {
      const auto status = readPathStatus(folder);
      if (!status || status->type != FileType::directory) continue;
      fmt::format_to(std::back_inserter(text), "{} {}\n", status->inode, FileUrl(folder).absoluteString());
    }
    appendDurably(m_path, text);
  } catch (const std::exception&) {
    // They stay when they are empty.
  }
}

std::unordered_map<std::string, std::uint64_t> MadeFolders::read() const {
  std::unordered_map<std::string, std::uint64_t> made;
  const auto text = readFile(m_path);
  for (std::string_view rest = text; !rest.empty();) {
    const auto end = std::min(rest.find('\n'), rest.size());
    const auto line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    std::uint64_t inode = 0;
    const auto [stop, error] = std::from_chars(line.data(), line.data() + line.size(), inode);
    const auto length = static_cast<std::size_t>(stop - line.data());
    if (error != std::errc() || length == line.size() || *stop != ' ') continue;
    if (const auto url = FileUrl::fromAbsoluteString(line.substr(length + 1))) {
      made.insert_or_assign(url->path(), inode);
    }
  }
  return made;
}

void MadeFolders::removeEmpty(const std::set<std::string>& folders) const noexcept {
  if (folders.empty()) return;
  try {
    const auto made = read();
    for (const auto& folder : folders) {
      auto path = folder;
      for (auto found = made.find(path); found != made.end() && removeIfStill(path, found->second);
           found = made.find(path)) {
        path = std::string(parentPath(path));
      }
    }
  } catch (const std::exception&) {
    // An unreadable folder is not removed.
  }
}

}  // namespace orvane
