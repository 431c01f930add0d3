#include "core/tasks/ExplainTask.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/values/Calendar.h"
#include "core/organizer/categories/CategoryClassifier.h"
#include "core/organizer/categories/FolderClassifier.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "core/organizer/records/CloudFolderDetector.h"
#include "core/safety/access/KeepList.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/known/KnownPlaceSearch.h"
#include "core/scanning/scan/BuildFolders.h"
#include "core/tasks/Folders.h"
#include "core/tasks/ItemAt.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/TaskServices.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace orvane {
namespace {

std::string deciderOf(const TaskServices& services, const FileUrl& place, const FileItem& item) {
  if (item.isFolder()) return CategoryClassifier::reasonFor(place, 0);
  const NamedFiles namedFiles(services.validator.protectedLocations().profile());
  const FolderClassifier classifier(joinPath(parentPath(place.path()), ""), namedFiles);
  const auto* row = classifier.namedFile(place.lastPathComponent(), item.fileSize());
  return row == nullptr ? CategoryClassifier::reasonFor(place, item.fileSize()) : std::string(row->file->words);
}

// Who makes a folder again, by the name of its row.
struct Maker {
  std::string_view folder;
  std::string_view words;
};
constexpr std::array makers{
    Maker{"node_modules", "npm, or the package manager that the project uses,"},
    Maker{"target", "Cargo"},
    Maker{"build", "Gradle"},
    Maker{".gradle", "Gradle"},
    Maker{".venv", "Python's venv, and pip for what was installed in it,"},
    Maker{"venv", "Python's venv, and pip for what was installed in it,"},
    Maker{".next", "Next.js"},
    Maker{".nuxt", "Nuxt"},
    Maker{"dist", "the bundler of the project"},
    Maker{"__pycache__", "Python"},
    Maker{".tox", "tox"},
    Maker{".mypy_cache", "mypy"},
    Maker{".pytest_cache", "pytest"},
};

// The file that tells a folder's row, by its name.
std::string markerOf(const SystemProfile::BuildFolder& row, const FileUrl& project) {
  if (!row.inside.empty()) return std::string(row.inside);
  if (row.beside.empty()) return {};
  for (const auto& name : PathPattern::alternatives(row.beside)) {
    if (itemExists(joinPath(project.path(), name.text()).c_str())) return name.text();
  }
  return {};
}

std::optional<Explanation::Build> explainBuild(const TaskServices& services, const FileUrl& place) {
  const auto project = place.deletingLastPathComponent();
  const auto folder = openFolderWithoutLinks(AT_FDCWD, canonicalPath(project.path()));
  if (!folder) return std::nullopt;
  const BuildFolders folders(services.validator.protectedLocations().profile());
  const std::string name(place.lastPathComponent());
  const auto* row = folders.rowOf(folder.get(), name);
  const auto status = row == nullptr ? std::nullopt : readFileStatus(folder.get(), name.c_str());
  if (!status || status->type != FileType::directory) return std::nullopt;
  Explanation::Build build{.project = project, .marker = markerOf(*row, project), .maker = "its tool", .idleDays = {}};
  const auto* const maker = std::ranges::find(makers, row->name, &Maker::folder);
  if (maker != makers.end()) build.maker = maker->words;
  if (const auto changed = folders.lastWorkedOn(folder.get())) {
    build.idleDays = std::max<std::int64_t>(0, wholeDaysBetween(*changed, ReferenceClock::now()));
  }
  return build;
}

std::optional<Explanation::Item> explainItem(const TaskServices& services, const FileUrl& place) {
  const auto item = itemAt(services, place, WholeFolder::unmeasured);
  if (!item) return std::nullopt;
  const auto& places = services.validator.knownPlaces();
  const auto* known = places.rowOf(place.path());
  const auto program = known == nullptr ? std::string_view() : places.titleOf(*known, place.path());
  const bool isInUse =
      known != nullptr &&
      KnownPlaceSearch(services.validator, services.statusReader).isInUse(canonicalPlace(place.path()), *known);
  return Explanation::Item{
      .category = item->category(),
      .riskLabel = item->riskLabel(),
      .cleaning = scannedMark(*item),
      .organizerCategory =
          services.organizer.determineCategory(place, item->isFolder() ? ItemKind::folder : ItemKind::file,
                                               place.deletingLastPathComponent(), OrganizationStrategy::byCategory),
      .decidedBy = known == nullptr  ? deciderOf(services, place, *item)
                   : program.empty() ? std::string("it is a known place of caches and logs")
                                     : fmt::format("it is a known place of {}", program),
      .isInUse = isInUse,
  };
}

}  // namespace

std::vector<Explanation> explain(const TaskServices& services, std::span<const FileUrl> places) {
  const Boundary granted(grantedFolders(services));
  auto kept = services.keepList.places();
  std::vector<Explanation> result;
  result.reserve(places.size());
  for (const auto& place : places) {
    auto& explanation = result.emplace_back();
    explanation.place = place;
    explanation.item = explainItem(services, place);
    explanation.knownPlaceReason = knownPlaceReason(services, place, AppLanguage::en);
    if (auto refusal = services.validator.refusalText(place, fixedRulesOnly); !refusal.empty()) {
      explanation.refusal = std::move(refusal);
      explanation.protectedContent = services.validator.protectedContent(place);
    }
    const bool isFolder = explanation.item && !explanation.refusal && explanation.knownPlaceReason.empty();
    if (isFolder) explanation.build = explainBuild(services, place);
    if (explanation.build) {
      explanation.item->category = ScanCategory::developerCaches;
      explanation.item->riskLabel = RiskLabel::review;
      explanation.item->cleaning = {Choice::unselected};
    }
    if (const auto* keeper = kept.keeperOf(place)) explanation.keptBy = *keeper;
    explanation.keepPattern = services.keepList.patternFor(place);
    explanation.isGranted = services.validator.isPathAllowed(place, granted);
    if (!explanation.knownPlaceReason.empty() && services.validator.isPathAllowed(place, Boundary({place}))) {
      explanation.refusal.reset();
      explanation.isGranted = explanation.isGranted || grantedKnownPlaces(services) == KnownPlaces::include;
    }
    explanation.provider = CloudFolderDetector::detectProvider(place);
    explanation.syncWarning = CloudFolderDetector::syncWarning(place);
    explanation.isCloudPlaceholder = CloudFolderDetector::isDatalessCloudPlaceholder(place);
  }
  return result;
}

}  // namespace orvane
