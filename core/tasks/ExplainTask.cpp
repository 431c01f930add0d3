#include "core/tasks/ExplainTask.h"

#include "core/base/files/PathText.h"
#include "core/organizer/categories/CategoryClassifier.h"
#include "core/organizer/categories/FolderClassifier.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "core/organizer/records/CloudFolderDetector.h"
#include "core/safety/access/KeepList.h"
#include "core/safety/rules/PathValidator.h"
#include "core/tasks/Folders.h"
#include "core/tasks/ItemAt.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

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

std::optional<Explanation::Item> explainItem(const TaskServices& services, const FileUrl& place) {
  const auto item = itemAt(services, place, WholeFolder::unmeasured);
  if (!item) return std::nullopt;
  const auto& places = services.validator.knownPlaces();
  const auto* known = places.rowOf(place.path());
  const auto program = known == nullptr ? std::string_view() : places.programOf(*known, place.path());
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
