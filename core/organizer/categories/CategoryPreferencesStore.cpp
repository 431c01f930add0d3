#include "core/organizer/categories/CategoryPreferencesStore.h"

#include "core/base/text/UnicodeText.h"
#include "core/platform/StoredValue.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr std::string_view learnedCategoriesKey = "OrvaneLearnedCategoryPreferences";

CategoryPreferencesStore::Categories categoriesFrom(const Json* stored) {
  CategoryPreferencesStore::Categories categories;
  if (stored == nullptr || !stored->is_object()) return categories;
  for (const auto& [key, category] : stored->items()) {
    if (!category.is_string()) return {};
    categories.insert_or_assign(key, category.get<std::string>());
  }
  return categories;
}

}  // namespace

CategoryPreferencesStore::Categories& CategoryPreferencesStore::known() const {
  if (!m_known) m_known = storedValue(m_preferences, learnedCategoriesKey, categoriesFrom);
  return *m_known;
}

void CategoryPreferencesStore::rememberPreference(std::string_view extensionKey, std::string_view category) {
  const std::lock_guard lock(m_mutex);
  const auto remember = [&](Categories& categories) {
    categories.insert_or_assign(lowercased(extensionKey), std::string(category));
  };
  remember(known());
  // Another process may have learned or forgotten something since.
  m_known = changeStoredValue(m_preferences, learnedCategoriesKey, remember, categoriesFrom);
}

std::optional<std::string> CategoryPreferencesStore::preferredCategory(std::string_view extensionKey) const {
  const std::string key = lowercased(extensionKey);
  const std::lock_guard lock(m_mutex);
  const auto found = known().find(key);
  if (found == known().end()) return std::nullopt;
  return found->second;
}

CategoryPreferencesStore::Categories CategoryPreferencesStore::preferences() const {
  const std::lock_guard lock(m_mutex);
  return known();
}

std::set<std::string> CategoryPreferencesStore::learnedCategoryRoots() const {
  const std::lock_guard lock(m_mutex);
  std::set<std::string> roots;
  for (const auto& [key, category] : known()) {
    const auto start = category.find_first_not_of('/');
    if (start == std::string::npos) continue;
    roots.insert(category.substr(start, std::min(category.find('/', start), category.size()) - start));
  }
  return roots;
}

void CategoryPreferencesStore::reset() {
  const std::lock_guard lock(m_mutex);
  m_known.emplace();
  m_preferences.setValue(learnedCategoriesKey, Json(*m_known));
}

}  // namespace orvane
