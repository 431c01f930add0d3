#pragma once

#include "core/localization/records/AppLanguage.h"
#include "core/platform/SystemProfile.h"

#include <mutex>
#include <string_view>

namespace orvane {

// The language that texts are looked up in, and the keys that this system shows in place of others. For any thread.
class ThreadSafeLanguageStore {
 public:
  // The profile must outlive this object.
  explicit ThreadSafeLanguageStore(const SystemProfile& profile = SystemProfile::none()) : m_profile(profile) {}
  static ThreadSafeLanguageStore& shared();

  [[nodiscard]] AppLanguage currentLanguage() const {
    const std::lock_guard lock(m_mutex);
    return m_currentLanguage;
  }
  void setCurrentLanguage(AppLanguage language) {
    const std::lock_guard lock(m_mutex);
    m_currentLanguage = language;
  }

  // The key whose text stands for `key` on this system; mostly `key` itself.
  [[nodiscard]] std::string_view shownKey(std::string_view key) const noexcept {
    for (const auto& wording : m_profile.wordings()) {
      if (wording.key == key) return wording.shownKey;
    }
    return key;
  }

 private:
  const SystemProfile& m_profile;
  mutable std::mutex m_mutex;
  AppLanguage m_currentLanguage = AppLanguage::en;
};

}  // namespace orvane
