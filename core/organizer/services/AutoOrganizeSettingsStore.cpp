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

}  // namespace orvane
