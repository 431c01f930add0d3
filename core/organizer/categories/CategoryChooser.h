#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/organizer/categories/CategoryPreferencesStore.h"
#include "core/organizer/records/OrganizationStrategy.h"
#include "core/platform/SystemProfile.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

enum class ItemKind : std::uint8_t { file, folder };

// Names the category path of each item of one folder that is being organised. Callable from any thread.
class CategoryChooser {
 public:
  struct Item {
    std::string_view name;
    ItemKind kind = ItemKind::file;
    // Of a folder, which is listed where its name does not tell its kind.
    std::optional<FileUrl> url = std::nullopt;
    // The later choice where the first is absent, and the current date where both are.
    std::optional<FileTime> modified = std::nullopt;
    std::optional<FileTime> created = std::nullopt;
  };

  // Which kind of folder `targetFolder` is shows in its name alone. `profile` must outlive this object.
  CategoryChooser(const FileUrl& targetFolder, OrganizationStrategy strategy,
                  CategoryPreferencesStore::Categories learned, const SystemProfile& profile = SystemProfile::none());

  [[nodiscard]] std::string categoryOf(const Item& item) const;

  // Whether a folder of this name holds documents, so that their kinds stand right in its destination.
  [[nodiscard]] static bool isDocumentsFolder(const FileUrl& folder);
  // Whether documents of a folder of this name are sorted as documents.
  [[nodiscard]] static bool sortsDocuments(const FileUrl& folder);

 private:
  enum class TargetKind : std::uint8_t { pictures, media, documents, development, other };
  static TargetKind kindOf(const FileUrl& folder);

  [[nodiscard]] std::string byDate(const Item& item) const;
  [[nodiscard]] std::string byKindOfTarget(const Item& item) const;
  [[nodiscard]] std::string ordinary(const Item& item) const;
  // The same in a folder of media.
  [[nodiscard]] std::string_view mediaKind(const Item& item) const;
  // By the given table, else by the profile's.
  [[nodiscard]] std::string_view categoryOfFile(std::string_view extension, std::string_view name) const;

  OrganizationStrategy m_strategy;
  TargetKind m_targetKind;
  CategoryPreferencesStore::Categories m_learned;
  const SystemProfile& m_profile;

  // Naming a month is slow, and most files share theirs with others: the names by local day.
  mutable std::mutex m_mutex;
  mutable std::map<std::int64_t, std::string> m_monthOfDay;
};

}  // namespace orvane
