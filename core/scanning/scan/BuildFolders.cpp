#include "core/scanning/scan/BuildFolders.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/scanning/walk/BlackHoleNames.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace orvane {
namespace {

constexpr int deepestSource = 6;
constexpr int maxEntries = 5000;
constexpr std::size_t maxBytesRead = 65536;

// The beginning of a regular file; absent where there is none.
std::optional<std::string> beginningOf(int folder, const std::string& name) {
  const FileDescriptor file(::openat(folder, name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  const auto status = readFileStatus(folder, name.c_str());
  if (!file || !status || status->type != FileType::regular) return std::nullopt;
  std::string text(maxBytesRead, '\0');
  const auto length = ::pread(file.get(), text.data(), text.size(), 0);
  text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  return text;
}

bool mentionsOne(std::string_view text, std::string_view words) {
  while (!words.empty()) {
    const auto end = std::min(words.find(','), words.size());
    if (text.find(words.substr(0, end)) != std::string_view::npos) return true;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return false;
}

bool isRegular(int folder, const std::string& name) {
  const auto status = readFileStatus(folder, name.c_str());
  return status && status->type == FileType::regular;
}

}  // namespace

BuildFolders::BuildFolders(const SystemProfile& profile) {
  for (const auto& folder : profile.buildFolders()) {
    m_rows.push_back(
        {&folder, folder.beside.empty() ? std::vector<PathPattern>() : PathPattern::alternatives(folder.beside)});
  }
}

bool BuildFolders::isNamed(std::string_view name) const noexcept {
  return std::ranges::any_of(m_rows, [&](const Row& row) { return row.folder->name == name; });
}

bool BuildFolders::holds(const Row& row, int parent, const std::string& name) {
  const auto* const folder = row.folder;
  const auto& beside = row.beside;
  if (!fitsWildcard(name, folder->name)) return false;
  // A signature stands at the very beginning.
  const auto begins = [&](const std::string& file) {
    const auto text = beginningOf(parent, file);
    return text && text->starts_with(folder->mentions);
  };
  const auto fits = [&](const std::string& file) {
    if (folder->mentions.empty()) return isRegular(parent, file);
    const auto text = beginningOf(parent, file);
    return text && mentionsOne(*text, folder->mentions);
  };
  if (!folder->inside.empty() && !begins(joinPath(name, folder->inside))) return false;
  return beside.empty() || std::ranges::any_of(beside, [&](const auto& pattern) { return fits(pattern.text()); });
}

const SystemProfile::BuildFolder* BuildFolders::rowOf(int parent, const std::string& name) const {
  const auto row = std::ranges::find_if(m_rows, [&](const Row& candidate) { return holds(candidate, parent, name); });
  return row == m_rows.end() ? nullptr : row->folder;
}

std::optional<Date> BuildFolders::lastWorkedOn(int project) const {
  std::optional<Date> newest;
  int entriesLeft = maxEntries;
  lookForNewest(project, 0, entriesLeft, newest);
  return newest;
}

void BuildFolders::lookForNewest(int folder, int depth, int& entriesLeft, std::optional<Date>& newest) const {
  auto reader = DirectoryReader::open(folder, ".", DirectoryReader::Links::refuse);
  if (!reader) return;
  while (const auto entry = reader->next()) {
    if (--entriesLeft < 0) return;
    if (entry->name.starts_with('.') || isNamed(entry->name) || isBlackHoleName(entry->name)) continue;
    if (entry->type == FileType::regular) {
      const auto status = readFileStatus(reader->descriptor(), entry->nameBytes());
      if (status && (!newest || status->modified.date() > *newest)) newest = status->modified.date();
    } else if (entry->type == FileType::directory && depth < deepestSource) {
      const auto below =
          DirectoryReader::open(reader->descriptor(), entry->nameBytes(), DirectoryReader::Links::refuse);
      if (below) lookForNewest(below->descriptor(), depth + 1, entriesLeft, newest);
    }
  }
}

}  // namespace orvane
