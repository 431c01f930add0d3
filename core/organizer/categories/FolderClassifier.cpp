#include "core/organizer/categories/FolderClassifier.h"

#include <algorithm>

namespace orvane {

FolderClassifier::FolderClassifier(std::string_view folderPrefix, const DownloadsFolder& downloads) {
  const auto contains = [&](std::string_view fragment) {
    return folderPrefix.find(fragment) != std::string_view::npos;
  };
  for (const auto& row : pathFragments) {
    if (contains(row.fragment)) {
      m_category = row.category;
      break;
    }
    const auto nameStart = row.fragment.rfind('/') + 1;
    if (nameStart < row.fragment.size() && folderPrefix.ends_with(row.fragment.substr(0, nameStart))) {
      m_namePrefixes.push_back({row.fragment.substr(nameStart), row.category});
    }
  }
  m_facts.inLogs = contains(logsFragment);
  m_facts.inCaches = contains(cachesFragment);
  m_facts.inDownloads = contains(downloadsFragment) || downloads.holds(folderPrefix);
  m_facts.inLeftovers = std::any_of(leftoverFragments.begin(), leftoverFragments.end(), contains);
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
