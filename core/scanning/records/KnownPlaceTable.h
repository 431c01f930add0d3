#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/files/PathPattern.h"
#include "core/platform/SystemProfile.h"
#include "core/scanning/records/RiskLabel.h"
#include "core/scanning/records/ScanCategory.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The known places of a system profile, ready to be compared with paths. A place has the path that it is reached by or
// its canonical one; the first row that fits decides.
class KnownPlaceTable {
 public:
  struct Row {
    const SystemProfile::KnownPlace* place;
    std::vector<PathPattern> patterns;
    ScanCategory category;
    RiskLabel label;
  };

  // The profile must outlive this object. A row that names a category or a label that does not exist is a bug.
  explicit KnownPlaceTable(const SystemProfile& profile);

  [[nodiscard]] const SystemProfile& profile() const noexcept { return m_profile; }
  [[nodiscard]] std::span<const Row> rows() const noexcept { return m_rows; }
  // The canonical folder of a base; empty where there is none.
  [[nodiscard]] const std::string& folder(SystemProfile::Base base) const noexcept;

  // The row of exactly this place. Null where none fits it, where it lies in the place of an earlier row, and where a
  // row for all of a folder fits what could hold the place of an earlier one.
  [[nodiscard]] const Row* rowOf(std::string_view path) const noexcept;

  // The row of what lies in a Trash; null where the profile has none.
  [[nodiscard]] const Row* trashRow() const noexcept;

  // Whose the place is that the row fits.
  [[nodiscard]] std::string_view programOf(const Row& row, std::string_view path) const noexcept;
  // The same as people know it.
  [[nodiscard]] std::string_view titleOf(const Row& row, std::string_view path) const noexcept;
  // The component of the place that is named after its program, a proper name in the row or not.
  [[nodiscard]] std::string_view componentOf(const Row& row, std::string_view path) const noexcept;

 private:
  [[nodiscard]] std::optional<std::string_view> relative(const Row& row, std::string_view path) const noexcept;
  [[nodiscard]] PathPattern::Fit fit(const Row& row, std::string_view path) const noexcept;

  const SystemProfile& m_profile;
  std::vector<Row> m_rows;
  std::vector<std::string> m_folders;       // by base, canonical
  std::vector<std::string> m_namedFolders;  // by base, as the profile has them
};

}  // namespace orvane
