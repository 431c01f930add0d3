#include "core/tasks/CleanTask.h"

#include "core/base/files/PlaceSet.h"
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

bool takes(const CleanWish& wish, const FileItem& item) {
  const bool isNamed =
      std::find(wish.categories.begin(), wish.categories.end(), item.category()) != wish.categories.end();
  if (!wish.categories.empty() && !isNamed) return false;
  const auto mark = scannedMark(item);
  if (mark.choice == Choice::selected) return true;
  return mark.choice == Choice::unselected && isNamed && wish.reviewItems == ReviewItems::include;
}

Json subjectOf(const CleanWish& wish) {
  Json json = Json::object();
  json["folders"] = jsonFromUrls(wish.folders);
  auto& categories = json["categories"] = Json::array();
  for (const auto category : wish.categories) categories.push_back(rawValue(category));
  json["includesReview"] = wish.reviewItems == ReviewItems::include;
  json["includesDeveloperCaches"] = wish.developerCaches == DeveloperCaches::include;
  json[knownPlacesKey] = wish.knownPlaces == KnownPlaces::include;
  if (wish.minimumAgeDays) json[ageKey] = *wish.minimumAgeDays;
  if (wish.minimumSizeBytes) json[sizeKey] = *wish.minimumSizeBytes;
  return json;
}

CleanWish cleanWishFrom(const Json& subject) {
  CleanWish wish;
  wish.folders = urlsAt(subject, "folders");
  for (const auto& name : stringsFrom(requiredKey(subject, "categories"), "categories")) {
    const auto category = scanCategoryFromRawValue(name);
    if (!category) throw JsonError("\"categories\" names one that does not exist");
    wish.categories.push_back(*category);
  }
  if (booleanAt(subject, "includesReview")) wish.reviewItems = ReviewItems::include;
  if (booleanAt(subject, "includesDeveloperCaches")) wish.developerCaches = DeveloperCaches::include;
  // Files of earlier versions know none.
  if (optionalKey(subject, knownPlacesKey) != nullptr && booleanAt(subject, knownPlacesKey)) {
    wish.knownPlaces = KnownPlaces::include;
  }
  if (const auto* days = optionalKey(subject, ageKey)) wish.minimumAgeDays = integerFrom(*days, ageKey);
  if (const auto* bytes = optionalKey(subject, sizeKey)) wish.minimumSizeBytes = integerFrom(*bytes, sizeKey);
  return wish;
}

std::optional<Proposal> propose(const TaskServices& services, const CleanWish& wish, const Boundary& boundary,
                                Date countedTo, const TaskMonitor& monitor, const Notices& notices) {
  std::vector<FileItem> places;
  if (wish.knownPlaces == KnownPlaces::include) places = knownPlaceItems(services, wish.developerCaches, monitor.stop);
  // Nobody asked for what the desktop's Trash holds.
  std::erase_if(places, [](const FileItem& place) { return place.category() == ScanCategory::trash; });
  ProposalBuilder builder(TaskKind::clean, withKnownPlaces(boundary, places), countedTo);
  builder.setSubject(subjectOf(wish));
  for (const auto& notice : notices) builder.note(notice);
  RowsInTrash inTrash;
  PlaceSet known;
  for (const auto& place : places) known.insert(place.url().path());
  KeptRows kept(services);
  FilterMatcher filter({.minimumSizeBytes = wish.minimumSizeBytes}, countedTo);
  WholeAge age(wish.minimumAgeDays, countedTo);
  const auto isOldEnough = [&](const FileItem& item) {
    return age.isReachedBy(projectDate(services, item)) && age.admits(item);
  };
  const auto add = [&](FileItem item) {
    if (item.category() == ScanCategory::trash) inTrash.rows.add(item.fileSize());
    if (!takes(wish, item) || !filter.matches(item) || !isOldEnough(item) || kept.hold(item)) return;
    item.setSelected(true);
    builder.add(std::move(item), {Choice::selected});
  };
  const auto end = scanItems(services, wish.folders, wish.developerCaches, monitor, [&](FileItem item) {
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

std::optional<Proposal> proposeClean(const TaskServices& services, const CleanWish& wish, const TaskMonitor& monitor) {
  return propose(services, wish, Boundary(wish.folders), ReferenceClock::now(), monitor, {});
}

std::optional<Proposal> reproposeClean(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                       Date countedTo, const TaskMonitor& monitor) {
  auto wish = cleanWishFrom(subject);
  auto inside = foldersInside(boundary, wish.folders);
  wish.folders = std::move(inside.folders);
  if (boundary.canonicalPaths() != Boundary(grantedFolders(services)).canonicalPaths()) {
    wish.knownPlaces = KnownPlaces::leaveOut;
  } else if (wish.knownPlaces == KnownPlaces::include) {
    wish.knownPlaces = grantedKnownPlaces(services);
  }
  return propose(services, wish, boundary, countedTo, monitor, {inside.leftOut.begin(), inside.leftOut.end()});
}

Proposal proposeScanned(const TaskServices& services, ItemList items, std::vector<FileUrl> folders, Date scanned) {
  const auto places = knownPlacesAmong(services, items);
  ProposalBuilder builder(TaskKind::clean, withKnownPlaces(Boundary(std::move(folders)), places), scanned);
  builder.setItems(std::move(items));
  return builder.take();
}

}  // namespace orvane
