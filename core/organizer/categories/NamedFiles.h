#pragma once

#include "core/organizer/categories/DownloadsFolder.h"
#include "core/platform/SystemProfile.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The rows of a system profile for files that the given rows know nothing of, with the user's folders that they mean.
class NamedFiles {
 public:
  struct Row {
    const SystemProfile::NamedFile* file;
    ScanCategory category;
  };
  // The places of rows that a folder is, a bit each.
  using Places = std::uint8_t;

  // The user's folders are those that the system's settings have now. The profile must outlive this object. A row that
  // names a category that does not exist is a bug.
  explicit NamedFiles(const SystemProfile& profile);

  [[nodiscard]] const DownloadsFolder& downloads() const noexcept { return m_downloads; }
  // `folderPrefix` is the folder's path with a slash at its end.
  [[nodiscard]] Places placesOf(std::string_view folderPrefix, bool inDownloads) const noexcept;
  // The row of the file `name` in a folder that is these places. Null where none fits. Looks at the disk where a row
  // asks for it.
  [[nodiscard]] const Row* rowOf(std::string_view folderPrefix, Places places, std::string_view name) const;

 private:
  const SystemProfile& m_profile;
  DownloadsFolder m_downloads;
  std::vector<std::string> m_screencasts;  // as it is named and where it leads
  std::vector<Row> m_rows;
  // Those that ask for no day in the name: all that most names need.
  std::vector<Row> m_undatedRows;
  std::vector<Row> m_undatedRowsAnywhere;  // of these, in a folder of no special kind
};

}  // namespace orvane
