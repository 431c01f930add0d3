#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace orvane {

class Preferences;

// The categories that the user taught the organizer: a category path by extension or another key. Keys are kept in
// lower case. Callable from any thread.
class CategoryPreferencesStore {
 public:
  // Category path by lower-case key.
  using Categories = std::map<std::string, std::string, std::less<>>;

  // The first call that needs them reads the stored ones, and throws std::system_error where that fails: bringing items
  // back needs no preferences. A missing or malformed value counts as empty. `preferences` must outlive this object.
  explicit CategoryPreferencesStore(Preferences& preferences) : m_preferences(preferences) {}
  static CategoryPreferencesStore& shared();

  // Stored at once. Throws std::system_error when it cannot be written; it is remembered until the program ends then.
  void rememberPreference(std::string_view extensionKey, std::string_view category);
  [[nodiscard]] std::optional<std::string> preferredCategory(std::string_view extensionKey) const;
  // Everything that is remembered.
  [[nodiscard]] Categories preferences() const;
  // The first path component of every category: folders of these names were made by the organizer.
  [[nodiscard]] std::set<std::string> learnedCategoryRoots() const;
  // Forgets everything. Throws std::system_error.
  void reset();

 private:
  // Called under the lock.
  Categories& known() const;

  mutable std::mutex m_mutex;
  Preferences& m_preferences;
  mutable std::optional<Categories> m_known;
};

}  // namespace orvane
