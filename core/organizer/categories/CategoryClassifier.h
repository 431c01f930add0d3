#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// Names the category of a scanned file from its location and size alone; nothing is read from the disk.
class CategoryClassifier {
 public:
  // Always answers; manualReview is the catch-all. The dates have no influence.
  [[nodiscard]] static ScanCategory classify(const FileUrl& url, std::int64_t fileSize,
                                             std::optional<Date> createdDate = std::nullopt,
                                             std::optional<Date> lastOpenedDate = std::nullopt);
  // Says in English why the category is that: "its name ends in .log".
  [[nodiscard]] static std::string reasonFor(const FileUrl& url, std::int64_t fileSize);
  // Whether the name begins as screenshots do; the extension does not matter.
  [[nodiscard]] static bool isScreenshot(std::string_view filename) noexcept;
};

}  // namespace orvane
