#include "core/organizer/AutoOrganizeSettingsStore.h"

#include "core/base/Json.h"
#include "core/platform/Preferences.h"

#include <string_view>

namespace orvane {
namespace {
constexpr std::string_view preferencesKey = "OrvaneAutoOrganizeSettings";
}

AutoOrganizeSettings AutoOrganizeSettingsStore::load() const {
  const auto stored = m_preferences.value(preferencesKey);
  if (!stored) return {};
  try {
    return AutoOrganizeSettings::fromJson(*stored);
  } catch (const JsonError&) {
    return {};
  }
}

AutoOrganizeSettings AutoOrganizeSettingsStore::get() const {
  const std::lock_guard lock(m_mutex);
  return load();
}

AutoOrganizeSettings AutoOrganizeSettingsStore::update(const std::function<void(AutoOrganizeSettings&)>& change) {
  const std::lock_guard lock(m_mutex);
  auto settings = load();
  change(settings);
  m_preferences.setValue(preferencesKey, settings.toJson());
  return settings;
}

}  // namespace orvane
