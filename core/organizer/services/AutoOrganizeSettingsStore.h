#pragma once

#include "core/organizer/records/AutoOrganizeSettings.h"

#include <functional>

namespace orvane {

class Preferences;

// Keeps the settings of the automatic organizer in the preferences, where every process sees them. Callable from any
// thread.
class AutoOrganizeSettingsStore {
 public:
  // `preferences` must outlive this object.
  explicit AutoOrganizeSettingsStore(Preferences& preferences) : m_preferences(preferences) {}
  static AutoOrganizeSettingsStore& shared();

  // The defaults where nothing is stored or what is does not decode.
  [[nodiscard]] AutoOrganizeSettings get() const;
  // Applies a change to what is stored now and stores the whole. Returns it. Throws std::system_error.
  AutoOrganizeSettings update(const std::function<void(AutoOrganizeSettings&)>& change);
  // The same for a run that moved so many items.
  AutoOrganizeSettings noteRun(Date date, std::int64_t movedCount);

 private:
  Preferences& m_preferences;
};

}  // namespace orvane
