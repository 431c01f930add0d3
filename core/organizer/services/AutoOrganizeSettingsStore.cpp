#include "core/organizer/services/AutoOrganizeSettingsStore.h"

#include "core/platform/StoredValue.h"

namespace orvane {
namespace {
constexpr std::string_view preferencesKey = "OrvaneAutoOrganizeSettings";
}

AutoOrganizeSettings AutoOrganizeSettingsStore::get() const {
  return storedValue<AutoOrganizeSettings>(m_preferences, preferencesKey);
}

AutoOrganizeSettings AutoOrganizeSettingsStore::update(const std::function<void(AutoOrganizeSettings&)>& change) {
  return changeStoredValue<AutoOrganizeSettings>(m_preferences, preferencesKey, change);
}

AutoOrganizeSettings AutoOrganizeSettingsStore::noteRun(Date date, std::int64_t movedCount) {
  return update([&](AutoOrganizeSettings& settings) {
    settings.lastRunDate = date;
    settings.lastRunMovedCount = movedCount;
  });
}

}  // namespace orvane
