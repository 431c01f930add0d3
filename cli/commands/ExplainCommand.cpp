#include "cli/Arguments.h"
#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/Session.h"
#include "cli/commands/Commands.h"
#include "core/base/FileDescriptor.h"
#include "core/base/FileStatus.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/organizer/CategoryClassifier.h"
#include "core/organizer/CloudFolderDetector.h"
#include "core/organizer/OrganizerCategories.h"
#include "core/platform/FileStatusReader.h"
#include "core/safety/PathValidator.h"
#include "core/scanning/RiskEvaluator.h"
#include "platform/SystemServices.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <optional>

namespace orvane::cli {
namespace {

struct Explanation {
  FileUrl place;
  // These are absent where nothing stands at the place.
  std::optional<ScanCategory> category;
  std::optional<RiskLabel> riskLabel;
  std::optional<std::string> organizerCategory;
  std::optional<std::string> refusal;
  std::optional<CloudProvider> provider;
  std::optional<std::string> syncWarning;
  bool isCloudPlaceholder = false;
};

Explanation explanationOf(const FileUrl& place) {
  Explanation result;
  result.place = place;
  try {
    PathValidator::shared().validate(place, fixedRulesOnly);
  } catch (const SecurityError& error) {
    result.refusal = error.what();
  }
  result.provider = CloudFolderDetector::detectProvider(place);
  result.syncWarning = CloudFolderDetector::syncWarning(place);
  result.isCloudPlaceholder = CloudFolderDetector::isDatalessCloudPlaceholder(place);

  const auto status = systemFileStatusReader().read(AT_FDCWD, place.path().c_str());
  if (!status) return result;
  const bool isFolder = status->type == FileType::directory;
  // A folder's own size says nothing.
  const std::int64_t size = isFolder ? 0 : status->size;
  const Date created = status->created ? status->created->date() : ReferenceClock::now();
  result.category = CategoryClassifier::classify(place, size, created);
  result.riskLabel = RiskEvaluator::evaluate(*result.category, place, size, created);
  const std::string name(place.lastPathComponent());
  result.organizerCategory = isFolder ? defaultCategoryNameForFolder(name, place)
                                      : defaultCategoryNameForExtension(lowercased(place.pathExtension()), name);
  return result;
}

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

Json jsonFrom(const Explanation& explanation) {
  Json json = Json::object();
  json["path"] = pathForJson(explanation.place);
  json["category"] = explanation.category ? Json(rawValue(*explanation.category)) : Json();
  json["riskLabel"] = explanation.riskLabel ? Json(rawValue(*explanation.riskLabel)) : Json();
  json["isAllowed"] = !explanation.refusal.has_value();
  json["refusal"] = orNull(explanation.refusal);
  json["cloudProvider"] = explanation.provider ? Json(rawValue(*explanation.provider)) : Json();
  json["syncWarning"] = orNull(explanation.syncWarning);
  json["isCloudPlaceholder"] = explanation.isCloudPlaceholder;
  json["organizerCategory"] = orNull(explanation.organizerCategory);
  return json;
}

std::string_view cleaningText(ScanCategory category, RiskLabel label) {
  if (category == ScanCategory::trash) return "'orvanectl clean' leaves it: it is in a Trash already";
  switch (label) {
    case RiskLabel::safe:
      return "'orvanectl clean' takes it without a second look";
    case RiskLabel::review:
      return "'orvanectl clean' takes it only with --category and --include-review";
    case RiskLabel::manual:
      return "'orvanectl clean' never takes it";
  }
  return {};
}

void printText(Session& session, const Explanation& explanation, const Boundary& grantedRoots) {
  const auto line = [&](std::string_view key, std::string_view value) {
    session.out().line(fmt::format("  {:<11}{}", key, escapedForDisplay(value)));
  };
  session.out().line(shownPath(explanation.place));
  if (explanation.category) {
    line("category", fmt::format("{} ({})", displayName(*explanation.category), rawValue(*explanation.category)));
  }
  if (explanation.riskLabel) {
    line("risk", fmt::format("{}: {}", rawValue(*explanation.riskLabel), orvane::explanation(*explanation.riskLabel)));
    line("cleaning", cleaningText(*explanation.category, *explanation.riskLabel));
  }
  line("allowed", explanation.refusal ? "no. " + *explanation.refusal : "yes, no fixed rule protects it");
  const bool isGranted = PathValidator::shared().isPathAllowed(explanation.place, grantedRoots);
  if (!explanation.refusal && !isGranted) {
    line("folders", "outside the granted folders: name its folder to clean it, or --root to trash it");
  }
  if (explanation.syncWarning) line("cloud", *explanation.syncWarning);
  if (explanation.isCloudPlaceholder) line("cloud", "its content is held in the cloud only");
  if (explanation.organizerCategory) line("organizer", *explanation.organizerCategory);
}

ExitStatus run(Session& session, const Arguments& arguments) {
  std::vector<Explanation> explanations;
  auto status = ExitStatus::done;
  for (const auto& place : placesFromArguments(arguments.plain())) {
    explanations.push_back(explanationOf(place));
    if (!explanations.back().category) {
      Session::report(fmt::format("{}: {}", shownPath(place), errorText(ENOENT)));
      status = ExitStatus::failed;
    }
  }
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& explanation : explanations) json.push_back(jsonFrom(explanation));
    session.out().line(jsonText(json));
    return status;
  }
  const auto granted = PathValidator::canonicalizeRoots(grantedFolders());
  for (const auto& explanation : explanations) printText(session, explanation, granted);
  return status;
}

}  // namespace

constexpr CommandSpec explainCommand{
    .name = "explain",
    .summary = "Tell why each path is treated as it is",
    .details =
        "Shows the category, the risk and what follows from it, whether a fixed rule protects the path, the cloud "
        "service that keeps it in sync, and where the organizer would put it.",
    .arguments = {.name = "PATH",
                  .help = "Files and folders to explain.",
                  .least = 1,
                  .most = anyNumber,
                  .kind = ValueKind::path},
    .options = {},
    .run = run,
};

}  // namespace orvane::cli
