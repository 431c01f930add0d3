#pragma once

#include "core/base/values/Date.h"
#include "core/base/values/MinimumAge.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

class FileItem;

// Tells whether nothing in an item was changed for a number of days, of a folder everything in it: a folder's own time
// says only when something in it got another name. For one thread.
class WholeAge {
 public:
  // Counted to `now`. Without days every item is old enough.
  WholeAge(std::optional<std::int64_t> days, Date now);

  // The same for a day that counts as the item's; true where there is none.
  [[nodiscard]] bool isReachedBy(std::optional<Date> date) { return !m_age || !date || m_age->isReachedBy(*date); }
  // Reads the folder, until something in it is too young. One that cannot be read is not old enough.
  [[nodiscard]] bool admits(const FileItem& item);

 private:
  [[nodiscard]] bool admitsAllIn(const std::string& folder);

  std::optional<MinimumAge> m_age;
};

}  // namespace orvane
