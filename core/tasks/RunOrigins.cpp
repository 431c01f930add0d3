#include "core/tasks/RunOrigins.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/tasks/TaskServices.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view fileName = "undo_journal.origins";
constexpr std::string_view runKey = "runId";
constexpr std::string_view kindKey = "kind";
constexpr std::string_view scheduledKey = "isScheduled";
constexpr std::string_view detailKey = "detail";

// A file beyond this is not ours; some hundred thousand runs fit.
constexpr std::size_t maxFileBytes = 64UL << 20;
constexpr std::size_t maxDetailBytes = 500;  // bytes

std::string originsFile(const TaskServices& services) {
  return joinPath(services.journal().storageFolder(), fileName);
}

// Whole characters of UTF-8 only.
std::string shortened(std::string text) {
  if (text.size() <= maxDetailBytes) return text;
  auto length = maxDetailBytes;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  text.resize(length);
  return text + "…";
}

// Of the groups that lose a row, each once, in order.
std::string groupNames(const Approval& approval) {
  std::string names;
  const RowGroup* last = nullptr;
  for (const auto index : approval.rows()) {
    const auto* group = approval.proposal().row(index).group;
    if (group == nullptr || group == last) continue;
    last = group;
    if (!names.empty()) names += ", ";
    names += group->name;
    if (names.size() > maxDetailBytes) break;
  }
  return names;
}

std::string requestOf(const Proposal& proposal) {
  const auto* plan = optionalKey(proposal.subject(), "plan");
  return plan == nullptr ? std::string() : stringAt(*plan, "userGoal");
}

std::optional<std::pair<Uuid, RunOrigin>> originFrom(std::string_view line) {
  try {
    const auto json = parseJson(line);
    const auto kind = taskKindFromRawValue(stringAt(json, kindKey));
    if (!kind) return std::nullopt;
    const auto start = booleanAt(json, scheduledKey) ? RunOrigin::Start::scheduled : RunOrigin::Start::byHand;
    return std::pair(uuidAt(json, runKey), RunOrigin{*kind, start, stringAt(json, detailKey)});
  } catch (const JsonError&) {
    return std::nullopt;
  }
}

}  // namespace

RunOrigin originOf(const Approval& approval, RunOrigin::Start start) {
  RunOrigin origin{.kind = approval.proposal().kind(), .start = start};
  switch (origin.kind) {
    case TaskKind::rules:
    case TaskKind::uninstall:
      origin.detail = groupNames(approval);
      break;
    case TaskKind::plan:
      origin.detail = requestOf(approval.proposal());
      break;
    default:
      break;
  }
  origin.detail = shortened(std::move(origin.detail));
  return origin;
}

void recordOrigin(const TaskServices& services, const Uuid& runId, const RunOrigin& origin) {
  Json json = Json::object();
  json[runKey] = jsonFromUuid(runId);
  json[kindKey] = rawValue(origin.kind);
  json[scheduledKey] = origin.start == RunOrigin::Start::scheduled;
  json[detailKey] = origin.detail;
  // The last line may have been cut short.
  appendDurably(originsFile(services), "\n" + json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
}

std::unordered_map<Uuid, RunOrigin> recordedOrigins(const TaskServices& services) {
  std::unordered_map<Uuid, RunOrigin> origins;
  std::string text;
  try {
    text = readFile(originsFile(services), maxFileBytes);
  } catch (const std::system_error&) {
    return origins;
  }
  std::string_view rest = text;
  while (!rest.empty()) {
    const auto line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    if (line.empty()) continue;
    if (auto origin = originFrom(line)) origins.insert_or_assign(origin->first, std::move(origin->second));
  }
  return origins;
}

}  // namespace orvane
