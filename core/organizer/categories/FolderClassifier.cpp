#include "core/organizer/categories/FolderClassifier.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr std::string_view libraryFolder = "Library/";
static_assert(logsFragment.substr(1).starts_with(libraryFolder) && cachesFragment.substr(1).starts_with(libraryFolder));
static_assert(std::ranges::all_of(leftoverFragments,
                                  [](auto fragment) { return fragment.substr(1).starts_with(libraryFolder); }));

}  // namespace

FolderClassifier::FolderClassifier(std::string_view folderPrefix, const DownloadsFolder& downloads) {
  const auto contains = [&](std::string_view fragment) {
    return folderPrefix.find(fragment) != std::string_view::npos;
  };
  // Most fragments begin with the same folder, which few paths hold.
  const bool isInLibrary = contains(libraryFolder);
  for (const auto& row : pathFragments) {
    if (!isInLibrary && row.fragment.starts_with(libraryFolder)) continue;
    if (contains(row.fragment)) {
      m_category = row.category;
      break;
    }
    const auto nameStart = row.fragment.rfind('/') + 1;
    if (nameStart < row.fragment.size() && folderPrefix.ends_with(row.fragment.substr(0, nameStart))) {
      m_namePrefixes.push_back({row.fragment.substr(nameStart), row.category});
    }
  }
  m_facts.inLogs = isInLibrary && contains(logsFragment);
  m_facts.inCaches = isInLibrary && contains(cachesFragment);
  m_facts.inDownloads = contains(downloadsFragment) || downloads.holds(folderPrefix);
  m_facts.inLeftovers = isInLibrary && std::any_of(leftoverFragments.begin(), leftoverFragments.end(), contains);
}

FolderClassifier::FolderClassifier(std::string_view folderPrefix, const NamedFiles& namedFiles)
    : FolderClassifier(folderPrefix, namedFiles.downloads()) {
  m_namedFiles = &namedFiles;
  m_places = namedFiles.placesOf(folderPrefix, m_facts.inDownloads);
  m_prefix = folderPrefix;
}

ScanCategory FolderClassifier::classify(std::string_view name, std::int64_t fileSize) const {
  const auto category = classifyAlone(name, fileSize);
  if (category != ScanCategory::manualReview) return category;
  const auto* row = rowOf(name);
  return row == nullptr ? category : row->category;
}

const NamedFiles::Row* FolderClassifier::namedFile(std::string_view name, std::int64_t fileSize) const {
  return classifyAlone(name, fileSize) == ScanCategory::manualReview ? rowOf(name) : nullptr;
}

const NamedFiles::Row* FolderClassifier::rowOf(std::string_view name) const {
  return m_namedFiles == nullptr ? nullptr : m_namedFiles->rowOf(m_prefix, m_places, name);
}

ScanCategory FolderClassifier::classifyAlone(std::string_view name, std::int64_t fileSize) const {
  if (name == trashFolderName) return ScanCategory::trash;
  for (const auto& row : m_namePrefixes) {
    if (name.starts_with(row.prefix)) return row.category;
  }
  if (m_category) return *m_category;
  return categoryByName(name, fileSize, m_facts);
}

}  // namespace orvane
