#include "core/tasks/KnownPlaces.h"

#include "core/base/text/ByteCount.h"
#include "core/localization/LocalizedStrings.h"
#include "core/safety/access/FileAccessService.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/known/KnownPlaceSearch.h"
#include "core/scanning/walk/WholeFolders.h"
#include "core/tasks/TaskServices.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

constexpr double secondsPerDay = 86400;

std::string withValue(std::string_view text, std::string_view value) {
  std::string result(text);
  if (const auto mark = result.find("%1"); mark != std::string::npos) result.replace(mark, 2, value);
  return result;
}

std::string reasonText(const KnownPlaceTable& table, const KnownPlaceTable::Row& row, std::string_view key,
                       const FileUrl& place, AppLanguage language) {
  return withValue(LocalizedStrings::lookup(language, key), table.titleOf(row, place.path()));
}

// Of a folder that a tool made from a project.
std::string buildReason(const TaskServices& services, const FileItem& item, AppLanguage language) {
  const auto changed = projectDate(services, item);
  if (!changed) return {};
  const auto days =
      static_cast<std::int64_t>(std::max(0.0, (ReferenceClock::now() - *changed).count() / secondsPerDay));
  return withValue(LocalizedStrings::lookup(language, "place.build", days), formatCount(days));
}

}  // namespace

KnownPlaces grantedKnownPlaces(const TaskServices& services) {
  return services.folders.areKnownPlacesGranted() ? KnownPlaces::include : KnownPlaces::leaveOut;
}

void grantKnownPlaces(const TaskServices& services, KnownPlaces places) {
  services.folders.grantKnownPlaces(places == KnownPlaces::include);
}

std::vector<FileItem> knownPlaceItems(const TaskServices& services, DeveloperCaches developerCaches,
                                      const std::stop_token& stop) {
  const auto takes = [&](const KnownPlaceTable::Row& row, const std::string& /*path*/) {
    return row.category != ScanCategory::developerCaches || developerCaches == DeveloperCaches::include;
  };
  return KnownPlaceSearch(services.validator, services.statusReader).items(takes, stop);
}

Boundary withKnownPlaces(const Boundary& boundary, std::span<const FileItem> places) {
  auto folders = boundary.folders();
  for (const auto& place : places) folders.push_back(place.url());
  return Boundary(std::move(folders));
}

std::vector<FileItem> knownPlacesAmong(const TaskServices& services, const ItemList& items) {
  std::vector<FileItem> places;
  items.forEach([&](std::size_t, const FileItem& item) {
    if (services.validator.knownPlaces().rowOf(item.url().path()) == nullptr) return false;
    places.push_back(item);
    return true;
  });
  return places;
}

std::optional<Date> projectDate(const TaskServices& services, const FileItem& item) {
  const bool isBuild = item.isFolder() && item.category() == ScanCategory::developerCaches &&
                       !isBelowDeveloperCaches(item.url().path()) &&
                       services.validator.knownPlaces().rowOf(item.url().path()) == nullptr;
  return isBuild ? item.lastOpenedDate() : std::nullopt;
}

bool isPlaceInUse(const TaskServices& services, const FileItem& place) {
  const auto* row = services.validator.knownPlaces().rowOf(place.url().path());
  if (row == nullptr || row->category == ScanCategory::trash) return false;
  // Nothing else keeps a safe place from being selected.
  if (place.riskLabel() == RiskLabel::safe) return !place.isSelected();
  return KnownPlaceSearch(services.validator, services.statusReader).isInUse(place.url().path(), *row);
}

std::string knownPlaceReason(const TaskServices& services, const FileUrl& place, AppLanguage language) {
  const auto& table = services.validator.knownPlaces();
  const auto* row = table.rowOf(place.path());
  return row == nullptr ? std::string() : reasonText(table, *row, row->place->reason, place, language);
}

std::string knownPlaceReason(const TaskServices& services, const FileItem& item, AppLanguage language) {
  const auto& table = services.validator.knownPlaces();
  const auto* row = table.rowOf(item.url().path());
  if (row == nullptr) return buildReason(services, item, language);
  const auto reason = isPlaceInUse(services, item) ? "place.busy" : row->place->reason;
  return reasonText(table, *row, reason, item.url(), language);
}

}  // namespace orvane
