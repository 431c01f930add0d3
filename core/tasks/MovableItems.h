#pragma once

#include "core/base/files/FileUrl.h"
#include "core/safety/records/Boundary.h"
#include "core/tasks/Notice.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace orvane {

class FolderRules;
class KeptRows;
class PathValidator;

// Tells apart what the organizer may propose and what no run would move or the user keeps, and counts the latter.
class MovableItems {
 public:
  // All must outlive this object.
  MovableItems(const PathValidator& validator, const Boundary& boundary, KeptRows& kept);
  ~MovableItems();

  // Whether an item that is no link may be proposed; counted where not.
  [[nodiscard]] bool admits(const FileUrl& item, std::int64_t bytes);
  // Of what was not admitted, but for what is kept.
  [[nodiscard]] Notices notices() const;

 private:
  const FolderRules& rulesOf(std::string_view folder);

  const PathValidator& m_validator;
  const Boundary& m_boundary;
  KeptRows& m_kept;
  std::unordered_map<std::string, std::unique_ptr<FolderRules>> m_rules;
  // Items mostly come folder by folder.
  std::string m_lastFolder;
  const FolderRules* m_lastRules = nullptr;
  RowsNotProposed m_refused{.why = RowsNotProposed::Why::refused};
  RowsNotProposed m_unfinished{.why = RowsNotProposed::Why::unfinished};
};

}  // namespace orvane
