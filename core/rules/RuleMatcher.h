#pragma once

#include "core/base/values/Date.h"
#include "core/plans/FilterMatcher.h"
#include "core/rules/records/RuleMismatch.h"
#include "core/rules/records/RuleTrigger.h"
#include "core/scanning/records/FileItem.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// A trigger made ready to be held against many files: nothing is allocated for an ordinary one. For one thread.
class RuleMatcher {
 public:
  // Ages are counted to `now`, in whole days of the user's calendar.
  RuleMatcher(const RuleTrigger& trigger, Date now);

  [[nodiscard]] bool matches(const FileItem& file) { return !mismatch(file); }
  // The first condition that the file fails; absent for one that matches.
  [[nodiscard]] std::optional<RuleMismatch> mismatch(const FileItem& file);
  // Whether the file meets every condition and is kept from the rule by its label alone.
  [[nodiscard]] bool matchesButForLabel(const FileItem& file);

 private:
  [[nodiscard]] std::optional<RuleMismatch> triggerMismatch(const FileItem& file);

  // The beginning that a path must have, as plain text: a folder's name admits those of which it is the beginning.
  std::string m_pathPrefix;
  std::string m_realPrefix;  // where the prefix leads
  bool m_needsExtension;
  FilterMatcher m_filter;
};

}  // namespace orvane
