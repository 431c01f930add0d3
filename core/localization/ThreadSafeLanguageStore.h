#pragma once

#include "core/localization/records/AppLanguage.h"

#include <mutex>

namespace orvane {

// The language that texts are looked up in, for any thread.
class ThreadSafeLanguageStore {
 public:
  static ThreadSafeLanguageStore& shared();

  [[nodiscard]] AppLanguage currentLanguage() const {
    const std::lock_guard lock(m_mutex);
    return m_currentLanguage;
  }
  void setCurrentLanguage(AppLanguage language) {
    const std::lock_guard lock(m_mutex);
    m_currentLanguage = language;
  }

 private:
  mutable std::mutex m_mutex;
  AppLanguage m_currentLanguage = AppLanguage::en;
};

}  // namespace orvane
