#include "core/tasks/CleanTask.h"

#include "core/base/files/PathSet.h"
#include "core/base/text/Json.h"
#include "core/plans/FilterMatcher.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/ScanTask.h"
#include "core/tasks/TaskServices.h"
#include "core/tasks/WholeAge.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view ageKey = "minimumAgeDays";
constexpr std::string_view sizeKey = "minimumSizeBytes";

bool takes(const CleanOptions& options, const FileItem& item) {
  const bool isNamed =
      std::find(options.categories.begin(), options.categories.end(), item.category()) != options.categories.end();
  if (!options.categories.empty() && !isNamed) return false;
  const auto mark = scannedMark(item);
  if (mark.choice == Choice::selected) return true;
  return mark.choice == Choice::unselected && isNamed && options.reviewItems == ReviewItems::include;
}

Json subjectOf(const CleanOptions& options) {
  Json json = Json::object();
  json["folders"] = jsonFromUrls(options.folders);
  auto& categories = json["categories"] = Json::array();
  for (const auto category : options.categories) categories.push_back(rawValue(category));
  json["includesReview"] = options.reviewItems == ReviewItems::include;
  json["includesDeveloperCaches"] = options.developerCaches == DeveloperCaches::include;
  json[knownPlacesKey] = options.knownPlaces == KnownPlaces::include;
  if (options.minimumAgeDays) json[ageKey] = *options.minimumAgeDays;
  if (options.minimumSizeBytes) json[sizeKey] = *options.minimumSizeBytes;
  return json;
}

CleanOptions cleanOptionsFrom(const Json& subject) {
  CleanOptions options;
  options.folders = urlsAt(subject, "folders");
  for (const auto& name : stringsFrom(requiredKey(subject, "categories"), "categories")) {
    const auto category = scanCategoryFromRawValue(name);
    if (!category) throw JsonError("\"categories\" names one that does not exist");
    options.categories.push_back(*category);
  }
  if (booleanAt(subject, "includesReview")) options.reviewItems = ReviewItems::include;
  if (booleanAt(subject, "includesDeveloperCaches")) options.developerCaches = DeveloperCaches::include;
  // Files of earlier versions know none.
  if (optionalKey(subject, knownPlacesKey) != nullptr && booleanAt(subject, knownPlacesKey)) {
    options.knownPlaces = KnownPlaces::include;
  }
  if (const auto* days = optionalKey(subject, ageKey)) options.minimumAgeDays = integerFrom(*days, ageKey);
  if (const auto* bytes = optionalKey(subject, sizeKey)) options.minimumSizeBytes = integerFrom(*bytes, sizeKey);
  return options;
}

std::optional<Proposal> propose(const TaskServices& services, const CleanOptions& options, const Boundary& boundary,
                                Date countedTo, const TaskMonitor& monitor, const Notices& notices) {
  std::vector<FileItem> places;
  if (options.knownPlaces == KnownPlaces::include)
    places = knownPlaceItems(services, options.developerCaches, monitor.stop);
  // Nobody asked for what the desktop's Trash holds.
  std::erase_if(places, [](const FileItem& place) { return place.category() == ScanCategory::trash; });
  ProposalBuilder builder(TaskKind::clean, withKnownPlaces(boundary, places), countedTo);
  builder.setSubject(subjectOf(options));
  for (const auto& notice : notices) builder.note(notice);
  RowsInTrash inTrash;
  PathSet known;
  for (const auto& place : places) known.insert(place.url().path());
  KeptRows kept(services);
  FilterMatcher filter({.minimumSizeBytes = options.minimumSizeBytes}, countedTo);
  WholeAge age(options.minimumAgeDays, countedTo);
  const auto isOldEnough = [&](const FileItem& item) {
    return age.isReachedBy(projectDate(services, item)) && age.admits(item);
  };
  const auto add = [&](FileItem item) {
    if (item.category() == ScanCategory::trash) inTrash.rows.add(item.fileSize());
    if (!takes(options, item) || !filter.matches(item) || !isOldEnough(item) || kept.hold(item)) return;
    item.setSelected(true);
    builder.add(std::move(item), {Choice::selected});
  };
  const auto end = scanItems(services, options.folders, options.developerCaches, monitor, [&](FileItem item) {
    if (!known.contains(item.url().path()) && !known.holds(item.url().path())) add(std::move(item));
  });
  for (const auto& place : places) {
    if (!isPlaceInUse(services, place)) add(place);
  }
  if (end == ScanEnd::cancelled) return std::nullopt;
  if (inTrash.rows.count > 0) builder.note(inTrash);
  kept.noteIn(builder);
  return builder.take();
}

}  // namespace

std::optional<Proposal> proposeClean(const TaskServices& services, const CleanOptions& options,
                                     const TaskMonitor& monitor) {
  return propose(services, options, Boundary(options.folders), ReferenceClock::now(), monitor, {});
}

std::optional<Proposal> reproposeClean(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                       Date countedTo, const TaskMonitor& monitor) {
  auto options = cleanOptionsFrom(subject);
  auto inside = foldersInside(boundary, options.folders);
  options.folders = std::move(inside.folders);
  if (boundary.canonicalPaths() != Boundary(grantedFolders(services)).canonicalPaths()) {
    options.knownPlaces = KnownPlaces::leaveOut;
  } else if (options.knownPlaces == KnownPlaces::include) {
    options.knownPlaces = grantedKnownPlaces(services);
  }
  return propose(services, options, boundary, countedTo, monitor, {inside.leftOut.begin(), inside.leftOut.end()});
}

Proposal proposeScanned(const TaskServices& services, ItemList items, std::vector<FileUrl> folders, Date scanned) {
  const auto places = knownPlacesAmong(services, items);
  ProposalBuilder builder(TaskKind::clean, withKnownPlaces(Boundary(std::move(folders)), places), scanned);
  builder.setItems(std::move(items));
  return builder.take();
}

}  // namespace orvane
