#include "core/tasks/SavedProposal.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/IdentityJson.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/safety/access/KeepList.h"
#include "core/safety/rules/PathValidator.h"
#include "core/tasks/CleanTask.h"
#include "core/tasks/DuplicatesTask.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/OrganizeTask.h"
#include "core/tasks/PlanTask.h"
#include "core/tasks/RulesTask.h"
#include "core/tasks/TaskServices.h"
#include "core/tasks/TidyTask.h"
#include "core/tasks/TrashTask.h"
#include "core/tasks/UninstallTask.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view formatName = "orvane.proposal";
constexpr std::int64_t formatVersion = 1;
constexpr JsonLimits limits{.bytes = SavedProposal::maxBytes, .depth = 64, .keysPerObject = 64};

using Repropose = std::optional<Proposal> (*)(const TaskServices&, const Json&, const Boundary&, Date,
                                              const TaskMonitor&);

// Null for a kind that is never saved.
Repropose reproposerOf(TaskKind kind) {
  switch (kind) {
    case TaskKind::clean:
      return reproposeClean;
    case TaskKind::trash:
      return reproposeTrash;
    case TaskKind::plan:
      return reproposePlan;
    case TaskKind::rules:
      return reproposeRules;
    case TaskKind::duplicates:
      return reproposeDuplicates;
    case TaskKind::organize:
      return reproposeOrganize;
    case TaskKind::tidy:
      return reproposeTidy;
    case TaskKind::uninstall:
      return reproposeUninstall;
    case TaskKind::restore:
      break;
  }
  return nullptr;
}

Json rowJson(const ProposedRow& row) {
  Json json = Json::object();
  json["url"] = jsonFromUrl(row.item.url());
  json["fileSize"] = row.item.fileSize();
  json["category"] = rawValue(row.item.category());
  json["riskLabel"] = rawValue(row.item.riskLabel());
  json["destinationFolder"] = row.destinationFolder() != nullptr ? jsonFromUrl(*row.destinationFolder()) : Json();
  json["identity"] = jsonFromIdentity(row.item.identity().value_or(ItemIdentity{}));
  return json;
}

SavedProposal::Row rowFrom(const Json& json) {
  SavedProposal::Row row;
  row.item = urlAt(json, "url");
  row.identity = identityFromJson(requiredKey(json, "identity"));
  if (optionalKey(json, "destinationFolder") != nullptr) row.destinationFolder = urlAt(json, "destinationFolder");
  return row;
}

// Holds the rows of a file against what is proposed now.
class Comparison {
 public:
  Comparison(const TaskServices& services, const Boundary& boundary, const Proposal& fresh)
      : m_services(services), m_boundary(boundary), m_kept(services.keepList.places()), m_fresh(fresh) {
    fresh.forEach([&](std::size_t index, const ProposedRow& row) { m_places.emplace(row.item.url(), index); });
  }

  // The row of the fresh proposal that a saved one is; absent with `reason` set when it may not move.
  std::optional<std::size_t> match(const SavedProposal::Row& saved, std::string& reason) {
    const auto found = m_places.find(saved.item);
    if (found == m_places.end()) {
      reason = whyNotProposed(saved);
      return std::nullopt;
    }
    const auto row = m_fresh.row(found->second);
    reason = whyNot(saved, row);
    if (reason.empty() && !m_taken.emplace(found->second, true).second) reason = "It stands twice in the file.";
    return reason.empty() ? std::optional(found->second) : std::nullopt;
  }

 private:
  std::string whyNotProposed(const SavedProposal::Row& saved) {
    if (auto refusal = m_services.validator.refusalText(saved.item, m_boundary); !refusal.empty()) return refusal;
    if (auto reason = keptReason(m_kept, saved.item); !reason.empty()) return reason;
    const auto status = readPathStatus(saved.item.path());
    if (!status) return "Nothing is there any more.";
    if (!saved.identity.isStill(ItemIdentity::of(*status))) return "It has changed since it was proposed.";
    return "It would not be proposed now.";
  }

  static std::string whyNot(const SavedProposal::Row& saved, const ProposedRow& row) {
    switch (row.lock) {
      case Lock::none:
        break;
      case Lock::manualLabel:
        return "It is labelled manual, and only you can judge it.";
      case Lock::inTrash:
        return "It lies in a Trash already.";
      case Lock::inPlace:
        return "It is in its place already.";
      case Lock::listedOnly:
        return "It is only listed.";
      case Lock::refused:
        return row.group->refusal;
      case Lock::kept:
        return "It is on the keep list.";
      case Lock::reference:
        return "It lies in a folder that is only compared with.";
    }
    const auto identity = row.item.identity();
    if (!identity || !saved.identity.isStill(*identity)) return "It has changed since it was proposed.";
    const auto* folder = row.destinationFolder();
    const bool isSamePlace =
        folder == nullptr ? !saved.destinationFolder : saved.destinationFolder && *saved.destinationFolder == *folder;
    return isSamePlace ? std::string() : "It would go elsewhere now.";
  }

  const TaskServices& m_services;
  const Boundary& m_boundary;
  KeptPlaces m_kept;
  const Proposal& m_fresh;
  std::unordered_map<FileUrl, std::size_t> m_places;
  std::unordered_map<std::size_t, bool> m_taken;
};

FileItem bareItem(const FileUrl& url) {
  FileItem::Fields fields;
  fields.url = url;
  return FileItem(std::move(fields));
}

}  // namespace

SavedProposal SavedProposal::decode(std::string_view text) {
  SavedProposal saved;
  const auto document =
      parseJsonRows(text, limits, "rows", [&](const Json& row) { saved.rows.push_back(rowFrom(row)); });
  if (const auto* format = optionalKey(document, "format"); format == nullptr || *format != formatName) {
    throw JsonError("it is no saved proposal");
  }
  if (integerAt(document, "version") != formatVersion) {
    throw JsonError(fmt::format("it is of version {}, and this program reads version {}",
                                integerAt(document, "version"), formatVersion));
  }
  const auto name = stringAt(document, "task");
  const auto kind = taskKindFromRawValue(name);
  if (!kind || reproposerOf(*kind) == nullptr) {
    throw JsonError(fmt::format("\"task\" cannot be \"{}\"", shortenedToBytes(name, 100)));
  }
  saved.kind = *kind;
  saved.countedTo = dateAt(document, "countedTo");
  saved.subject = requiredKey(document, "subject");
  if (!requiredKey(document, "rows").is_array()) throw JsonError("\"rows\" must be an array of objects");
  return saved;
}

void writeProposal(const Approval& approval, const std::function<void(std::string_view)>& write) {
  const auto& proposal = approval.proposal();
  Json head = Json::object();
  head["format"] = formatName;
  head["version"] = formatVersion;
  head["task"] = rawValue(proposal.kind());
  head["countedTo"] = jsonFromDate(proposal.countedTo());
  head["subject"] = proposal.subject();
  auto text = jsonText(head);
  text.back() = ',';
  write(text + "\n\"rows\":[");
  std::string_view separator = "\n";
  for (const auto index : approval.rows()) {
    write(separator);
    write(jsonText(rowJson(proposal.row(index))));
    separator = ",\n";
  }
  write("\n]}\n");
}

std::optional<Proposal> proposeSaved(const TaskServices& services, const SavedProposal& saved, const Boundary& boundary,
                                     const TaskMonitor& monitor, KnownPlaces knownPlaces) {
  auto subject = saved.subject;
  if (knownPlaces == KnownPlaces::leaveOut && subject.is_object()) subject[knownPlacesKey] = false;
  // No item may count as older than it is.
  const auto countedTo = std::min(saved.countedTo, ReferenceClock::now());
  const auto fresh = reproposerOf(saved.kind)(services, subject, boundary, countedTo, monitor);
  if (!fresh) return std::nullopt;
  Comparison comparison(services, boundary, *fresh);
  std::unordered_map<std::size_t, bool> chosen;
  std::vector<std::pair<FileUrl, std::string>> refused;
  for (const auto& row : saved.rows) {
    std::string reason;
    if (const auto index = comparison.match(row, reason)) {
      chosen.emplace(*index, true);
    } else {
      refused.emplace_back(row.item, std::move(reason));
    }
  }
  ProposalBuilder builder(fresh->kind(), fresh->boundary(), countedTo);
  builder.setSubject(saved.subject);
  for (const auto& group : fresh->groups()) builder.addGroup(group);
  for (const auto& notice : fresh->notices()) builder.note(notice);
  fresh->forEach([&](std::size_t index, const ProposedRow& row) {
    const bool isChosen = chosen.contains(index);
    // Copies that stay are needed to compare those that go with them.
    if (!isChosen && (row.group == nullptr || !row.group->keepsOne)) return;
    const auto group =
        row.group == nullptr ? RowMark::noGroup : static_cast<std::uint32_t>(row.group - fresh->groups().data());
    builder.add(row.item, {isChosen ? Choice::selected : Choice::unselected, Lock::none, group},
                std::string(row.newName));
  });
  for (auto& [item, reason] : refused) {
    builder.add(bareItem(item), {Choice::locked, Lock::refused, builder.addGroup({.refusal = std::move(reason)})});
  }
  return builder.take();
}

}  // namespace orvane
