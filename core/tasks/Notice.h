#pragma once

#include "core/assistant/records/AIProvider.h"
#include "core/base/files/FileUrl.h"
#include "core/organizer/records/CloudProvider.h"
#include "core/rules/records/RuleMismatch.h"

#include <array>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace orvane {

// Items and their bytes.
struct RowSum {
  std::int64_t count = 0;
  std::int64_t bytes = 0;

  // An overflow ends the process.
  void add(std::int64_t size);
  bool operator==(const RowSum&) const = default;
};

// A fact that a proposal states beside its rows. Each front end words it in its own way; none invents one.

// A folder that was asked for and not looked at, or in which nothing may be changed.
struct FolderLeftOut {
  enum class Why : std::uint8_t {
    missing,     // it cannot be listed; `detail` is the system's reason
    refused,     // by the path rules; `detail` is their text
    notGranted,  // no granted folder holds it
    listedOnly,  // no granted folder holds it; its items are listed all the same
  };
  FileUrl folder;
  Why why = Why::missing;
  std::string detail = {};
  bool operator==(const FolderLeftOut&) const = default;
};

// Items that would be rows but for the label that keeps them.
struct RowsKeptByLabel {
  RowSum rows = {};
  std::string rule = {};  // the rule that they would match; empty where it is no rule's
  bool operator==(const RowsKeptByLabel&) const = default;
};

// Items that the user's keep list holds back.
struct RowsKept {
  RowSum rows = {};
  bool operator==(const RowsKept&) const = default;
};

// Items that lie where they would be moved to.
struct RowsInPlace {
  RowSum rows = {};
  std::string rule = {};
  bool operator==(const RowsInPlace&) const = default;
};

// Items that are not proposed, as they could not move or are being worked with.
struct RowsNotProposed {
  enum class Why : std::uint8_t {
    refused,     // by the path rules; `detail` is their text for the first
    unfinished,  // downloads in progress and what an office program has open
  };
  RowSum rows = {};
  Why why = Why::refused;
  std::string detail = {};
  bool operator==(const RowsNotProposed&) const = default;
};

// Items that a restore brought back and nobody changed since: they are left alone.
struct RowsReturned {
  RowSum rows = {};
  bool operator==(const RowsReturned&) const = default;
};

// The folder that would be taken apart is a software project.
struct ProjectTakenApart {
  FileUrl folder;
  bool operator==(const ProjectTakenApart&) const = default;
};

// Symbolic links that point to what would move, and would point nowhere then.
struct LinksToRows {
  std::int64_t count = 0;
  bool operator==(const LinksToRows&) const = default;
};

// Items that lie in a Trash already.
struct RowsInTrash {
  RowSum rows = {};
  bool operator==(const RowsInTrash&) const = default;
};

// Items that a rule does not take, by the first condition that they fail.
struct RowsNotTaken {
  std::string rule;
  std::array<std::int64_t, ruleMismatchCount> counts{};
  bool operator==(const RowsNotTaken&) const = default;
};

// A rule that is not carried out, and the sentence that says why.
struct RuleRefused {
  std::string rule;
  std::string reason;
  std::string key = {};  // of the text that says it in the user's language
  bool operator==(const RuleRefused&) const = default;
};

// Items that the user could take as well.
struct RowsLeftAside {
  RowSum rows = {};
  bool operator==(const RowsLeftAside&) const = default;
};

// The plan that a request became cannot be used.
struct PlanRefused {
  std::string fault;
  bool sortsWholeFolder = false;  // the organizer does what was asked for
  bool operator==(const PlanRefused&) const = default;
};

// Another planner than the one asked for made the plan.
struct PlannerFailed {
  AIProvider asked = AIProvider::heuristic;
  std::string reason;  // may quote a reply: escape it for display
  bool operator==(const PlannerFailed&) const = default;
};

using Notice = std::variant<FolderLeftOut, RowsKeptByLabel, RowsInPlace, RowsNotProposed, RowsReturned,
                            ProjectTakenApart, LinksToRows, RowsInTrash, RowsNotTaken, RuleRefused, RowsLeftAside,
                            PlanRefused, PlannerFailed, RowsKept>;
using Notices = std::vector<Notice>;

// The first notice of a kind; null where there is none.
template <typename Kind>
[[nodiscard]] const Kind* firstNotice(const Notices& notices) {
  for (const auto& notice : notices) {
    if (const auto* found = std::get_if<Kind>(&notice)) return found;
  }
  return nullptr;
}

}  // namespace orvane
