#pragma once

#include "core/base/files/PathPattern.h"
#include "core/base/values/Date.h"
#include "core/platform/SystemProfile.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Tells the folders that tools make from projects, by the rows of a system profile.
class BuildFolders {
 public:
  // The profile must outlive this object.
  explicit BuildFolders(const SystemProfile& profile);

  // Whether a row names the folder, so that it is looked at though it is hidden. Nothing is read.
  [[nodiscard]] bool isNamed(std::string_view name) const noexcept;
  // The row of the folder `name` in the folder open at `parent`; null where it is none. Looks at the disk.
  [[nodiscard]] const SystemProfile::BuildFolder* rowOf(int parent, const std::string& name) const;
  [[nodiscard]] bool holds(int parent, const std::string& name) const { return rowOf(parent, name) != nullptr; }
  // When a source file of the project open at `project` last changed: hidden files, folders that tools made and what
  // lies deep or behind very many files do not count. Absent where there is none.
  [[nodiscard]] std::optional<Date> lastWorkedOn(int project) const;

 private:
  struct Row {
    const SystemProfile::BuildFolder* folder;
    std::vector<PathPattern> beside;
  };
  [[nodiscard]] static bool holds(const Row& row, int parent, const std::string& name);
  void lookForNewest(int folder, int depth, int& entriesLeft, std::optional<Date>& newest) const;

  std::vector<Row> m_rows;
};

}  // namespace orvane
