#pragma once

#include "core/organizer/categories/ClassifierTables.h"
#include "core/organizer/categories/NamedFiles.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// CategoryClassifier for the entries of one folder: what the folder's path decides is decided once, so that an entry
// costs a look at its name.
class FolderClassifier {
 public:
  // `folderPrefix` is the folder's path with a slash at its end.
  explicit FolderClassifier(std::string_view folderPrefix) : FolderClassifier(folderPrefix, DownloadsFolder()) {}
  // With the rows of a system profile, which must outlive this object.
  FolderClassifier(std::string_view folderPrefix, const NamedFiles& namedFiles);

  // The same answer as CategoryClassifier::classify() for the entry `name`, but that the user's downloads folder counts
  // as one under any name, and that the rows of a profile are asked for a file that no rule knows.
  [[nodiscard]] ScanCategory classify(std::string_view name, std::int64_t fileSize) const;
  // The row of a profile that decided; null where none did.
  [[nodiscard]] const NamedFiles::Row* namedFile(std::string_view name, std::int64_t fileSize) const;

 private:
  // A fragment whose last component begins an entry's name, the rest of it ending the folder's path.
  struct NamePrefix {
    std::string_view prefix;
    ScanCategory category;
  };

  FolderClassifier(std::string_view folderPrefix, const DownloadsFolder& downloads);
  // By the given rows.
  [[nodiscard]] ScanCategory classifyAlone(std::string_view name, std::int64_t fileSize) const;
  [[nodiscard]] const NamedFiles::Row* rowOf(std::string_view name) const;

  std::vector<NamePrefix> m_namePrefixes;
  std::optional<ScanCategory> m_category;
  FolderFacts m_facts;
  const NamedFiles* m_namedFiles = nullptr;
  NamedFiles::Places m_places = 0;
  std::string m_prefix;  // of a folder to which the rows of a profile apply
};

}  // namespace orvane
