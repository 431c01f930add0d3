#include "core/rules/schedule/DailyMap.h"

#include "core/base/text/ByteCount.h"
#include "core/base/values/Uuid.h"
#include "core/localization/LocalizationManager.h"
#include "core/map/services/SnapshotStore.h"
#include "core/platform/NotificationCenter.h"
#include "core/tasks/MapTask.h"

#include <cmath>
#include <string>
#include <string_view>

namespace orvane {
namespace {

void put(std::string& into, std::string_view sign, const std::string& value) {
  if (const auto at = into.find(sign); at != std::string::npos) into.replace(at, sign.size(), value);
}

Notification warningOf(const FolderMap& map, double days) {
  auto body = localized("notification.full_soon.body");
  put(body, "%1", formatCount(static_cast<std::int64_t>(std::ceil(days))));
  std::string grown;
  if (map.growth && !map.growth->folders.empty()) {
    const auto& most = map.growth->folders.front();
    grown = map.map.folder(most.folder).name + " (+" + formatByteCount(most.bytes) + ")";
    body += " " + localized("map.mostly");
    put(body, "%1", grown);
  }
  return {.identifier = Uuid::random().toString(), .title = localized("notification.full_soon.title"), .body = body};
}

}  // namespace

void mapAndWarn(const MapServices& services, NotificationCenter& center, const std::function<void()>& lowerPriority) {
  if (!services.snapshots.isOn()) return;
  lowerPriority();
  const auto map = mapDaily(services, {});
  if (!map) return;
  const auto days = daysUntilFull(*map);
  const bool wasWarned = services.snapshots.warned().has_value();
  if (days && !wasWarned) center.post(warningOf(*map, *days));
  if (days.has_value() != wasWarned) services.snapshots.setWarned(days ? std::optional(map->taken) : std::nullopt);
}

}  // namespace orvane
