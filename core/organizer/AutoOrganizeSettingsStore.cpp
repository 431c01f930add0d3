#include "core/organizer/AutoOrganizeSettingsStore.h"

#include "core/base/Json.h"
#include "core/platform/Preferences.h"

#include <string_view>

namespace orvane {
namespace {

constexpr std::string_view preferencesKey = "OrvaneAutoOrganizeSettings";

AutoOrganizeSettings settingsFrom(const Json* stored) {
  if (stored == nullptr) return {};
  try {
    return AutoOrganizeSettings::fromJson(*stored);
  } catch (const JsonError&) {
    return {};
  }
}

}  // namespace

AutoOrganizeSettings AutoOrganizeSettingsStore::get() const {
  const auto stored = m_preferences.value(preferencesKey);
  return settingsFrom(stored ? &*stored : nullptr);
}

AutoOrganizeSettings AutoOrganizeSettingsStore::update(const std::function<void(AutoOrganizeSettings&)>& change) {
  AutoOrganizeSettings settings;
  m_preferences.update(preferencesKey, [&](const Json* stored) {
    settings = settingsFrom(stored);
    change(settings);
    return settings.toJson();
  });
  return settings;
}

}  // namespace orvane
