#pragma once

#include "core/organizer/categories/ClassifierTables.h"
#include "core/organizer/categories/DownloadsFolder.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane {

// CategoryClassifier for the entries of one folder: what the folder's path decides is decided once, so that an entry
// costs a look at its name.
class FolderClassifier {
 public:
  // `folderPrefix` is the folder's path with a slash at its end.
  explicit FolderClassifier(std::string_view folderPrefix, const DownloadsFolder& downloads = {});

  // The same answer as CategoryClassifier::classify() for the entry `name`, but that the user's downloads folder counts
  // as one under any name.
  [[nodiscard]] ScanCategory classify(std::string_view name, std::int64_t fileSize) const;

 private:
  // A fragment whose last component begins an entry's name, the rest of it ending the folder's path.
  struct NamePrefix {
    std::string_view prefix;
    ScanCategory category;
  };

  std::vector<NamePrefix> m_namePrefixes;
  std::optional<ScanCategory> m_category;
  FolderFacts m_facts;
};

}  // namespace orvane
