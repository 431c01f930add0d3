#include "core/safety/access/KeptPlaces.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>

#include <algorithm>
#include <utility>

namespace orvane {

KeptPlaces::KeptPlaces(std::vector<KeepPattern> patterns) {
  for (auto& pattern : patterns) {
    const auto path = pattern.plainBeginning();
    if (pattern.meansOnePlace()) {
      // A link is kept, and so is what it leads to.
      for (const auto& place : {path, canonicalPlace(path), canonicalPath(path)}) {
        m_places.emplace(place, pattern.text());
      }
      continue;
    }
    if (const auto real = canonicalPath(path); real != path) m_patterns.push_back(pattern.withBeginning(real));
    m_patterns.push_back(std::move(pattern));
  }
}

const std::string* KeptPlaces::keeperOf(const FileUrl& item) {
  if (empty()) return nullptr;
  const auto& path = item.path();
  if (const auto* keeper = keeperAt(path)) return keeper;
  if (const auto folder = parentPath(path); folder != m_lastFolder) {
    m_lastFolder = folder;
    m_lastCanonical = canonicalPath(folder);
  }
  const auto place = joinPath(m_lastCanonical, lastComponent(path));
  if (place != path) {
    if (const auto* keeper = keeperAt(place)) return keeper;
  }
  return keeperBelow(place);
}

// One that means the path, a folder that it lies in, or a named place in it.
const std::string* KeptPlaces::keeperAt(std::string_view path) const {
  const auto below = std::string(path) + '/';
  const auto next = m_places.lower_bound(below);
  if (next != m_places.end() && next->first.starts_with(below)) return &next->second;
  for (auto place = path; place.size() > 1; place = parentPath(place)) {
    if (const auto found = m_places.find(place); found != m_places.end()) return &found->second;
  }
  const auto found = std::ranges::find_if(
      m_patterns, [&](const KeepPattern& pattern) { return pattern.standing(path) == KeepPattern::Standing::meant; });
  return found == m_patterns.end() ? nullptr : &found->text();
}

// One that means something in the folder, were the item one.
const std::string* KeptPlaces::keeperBelow(const std::string& item) const {
  const auto mayMean = [&](const std::string& folder) {
    return std::ranges::any_of(m_patterns, [&](const KeepPattern& pattern) {
      return pattern.standing(folder) == KeepPattern::Standing::above;
    });
  };
  std::vector<std::string> folders;
  if (mayMean(item)) folders.push_back(item);
  while (!folders.empty()) {
    const auto folder = std::move(folders.back());
    folders.pop_back();
    auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::refuse);
    while (const auto entry = reader ? reader->next() : std::nullopt) {
      auto place = joinPath(folder, entry->name);
      if (const auto* keeper = keeperAt(place)) return keeper;
      const bool mayBeFolder = entry->type == FileType::directory || entry->type == FileType::unknown;
      if (mayBeFolder && mayMean(place)) folders.push_back(std::move(place));
    }
  }
  return nullptr;
}

}  // namespace orvane
