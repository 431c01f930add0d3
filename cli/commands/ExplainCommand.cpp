#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Session.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PlaceText.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/ExplainTask.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <cerrno>
#include <optional>

namespace orvane::cli {
namespace {

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

Json jsonFrom(const Explanation& explanation) {
  const auto& item = explanation.item;
  Json json = Json::object();
  json["path"] = pathOrUrl(explanation.place);
  json["category"] = item ? Json(rawValue(item->category)) : Json();
  json["riskLabel"] = item ? Json(rawValue(item->riskLabel)) : Json();
  json["isAllowed"] = !explanation.refusal.has_value();
  json["refusal"] = orNull(explanation.refusal);
  json["cloudProvider"] = explanation.provider ? Json(rawValue(*explanation.provider)) : Json();
  json["syncWarning"] = orNull(explanation.syncWarning);
  json["isCloudPlaceholder"] = explanation.isCloudPlaceholder;
  json["organizerCategory"] = item ? Json(item->organizerCategory) : Json();
  return json;
}

std::string_view cleaningText(const Explanation::Item& item) {
  if (item.cleaning.lock == Lock::inTrash) return "'orvanectl clean' leaves it: it is in a Trash already";
  if (item.isInUse) return "'orvanectl clean' leaves it while its program runs";
  if (item.cleaning.choice == Choice::unselected && item.category == ScanCategory::developerCaches) {
    return "'orvanectl clean' takes it only with --developer-caches, --category and --include-review";
  }
  switch (item.cleaning.choice) {
    case Choice::selected:
      return "'orvanectl clean' takes it without a second look";
    case Choice::unselected:
      return "'orvanectl clean' takes it only with --category and --include-review";
    case Choice::locked:
      return "'orvanectl clean' never takes it";
  }
  return {};
}

std::string deciderText(const Explanation& explanation) {
  const auto& build = explanation.build;
  if (!build) return explanation.item->decidedBy;
  const auto project = shownPath(build->project);
  if (build->marker.empty()) return fmt::format("its name tells that a tool made it in {}", project);
  return fmt::format("{} tells that a tool made it from {}", build->marker, project);
}

std::string buildText(const Explanation::Build& build) {
  auto text = fmt::format("{} makes it again", build.maker);
  if (!build.idleDays) return text;
  return text + fmt::format("; the project changed {} {} ago", formatCount(*build.idleDays),
                            *build.idleDays == 1 ? "day" : "days");
}

void printText(Session& session, const Explanation& explanation) {
  const auto line = [&](std::string_view key, std::string_view value) {
    session.out().line(fmt::format("  {:<11}{}", key, escapedForDisplay(value)));
  };
  session.out().line(shownPath(explanation.place));
  if (const auto& item = explanation.item) {
    line("category", fmt::format("{} ({})", displayName(item->category), rawValue(item->category)));
    line("because", deciderText(explanation));
    line("risk", fmt::format("{}: {}", rawValue(item->riskLabel), orvane::explanation(item->riskLabel)));
    if (!explanation.keptBy) line("cleaning", cleaningText(*item));
  }
  line("allowed", explanation.refusal ? "no. " + *explanation.refusal : "yes, no fixed rule protects it");
  if (!explanation.knownPlaceReason.empty()) line("why", explanation.knownPlaceReason);
  if (explanation.build) line("why", buildText(*explanation.build));
  if (explanation.refusal && !explanation.protectedContent.empty()) {
    line("protects", fmt::format("{}, whatever folders are named", explanation.protectedContent));
  }
  if (!explanation.refusal && !explanation.isGranted) {
    line("folders", "outside the granted folders: name its folder to clean it, or --root to trash it");
  }
  if (explanation.keptBy) {
    line("kept", fmt::format("never offered: '{}' is on the keep list", *explanation.keptBy));
  } else if (!explanation.refusal) {
    line("to keep it", fmt::format("orvanectl keep add '{}'", explanation.keepPattern));
  }
  if (explanation.syncWarning) line("cloud", *explanation.syncWarning);
  if (explanation.isCloudPlaceholder) line("cloud", "its content is held in the cloud only");
  if (explanation.item) line("organizer", explanation.item->organizerCategory);
}

ExitStatus runExplain(Session& session, const Arguments& arguments) {
  const auto explanations = explain(TaskServices::shared(), placesFromArguments(arguments.plain()));
  auto status = ExitStatus::done;
  for (const auto& explanation : explanations) {
    if (explanation.item) continue;
    Session::report(fmt::format("{}: {}", shownPath(explanation.place), errorText(ENOENT)));
    status = ExitStatus::failed;
  }
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& explanation : explanations) json.push_back(jsonFrom(explanation));
    session.out().line(jsonText(json));
    return status;
  }
  for (const auto& explanation : explanations) printText(session, explanation);
  return status;
}

}  // namespace

constexpr CommandSpec explainCommand{
    .name = "explain",
    .summary = "Tell why each path is treated as it is",
    .details =
        "Shows the category and what of the path decides it, the risk and what follows from it, whether a fixed rule "
        "or the keep list protects the path and what would, the cloud service that keeps it in sync, and where the "
        "organizer would put it.",
    .arguments =
        {.name = "PATH", .help = "Files and folders to explain.", .min = 1, .max = anyNumber, .kind = ValueKind::path},
    .options = {},
    .run = runExplain,
};

}  // namespace orvane::cli
