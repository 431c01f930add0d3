#pragma once

#include "core/base/files/FileUrl.h"
#include "core/organizer/records/CloudProvider.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// Recognises by their paths what a cloud service keeps in sync and files whose content is held in the cloud only.
// Nothing is read from the disk.
class CloudFolderDetector {
 public:
  // For the current user's home folder, or for the one given. Errs towards finding a provider.
  [[nodiscard]] static std::optional<CloudProvider> detectProvider(const FileUrl& url);
  [[nodiscard]] static std::optional<CloudProvider> detectProvider(const FileUrl& url, std::string_view homeFolder);

  // The warning before the item is removed, in English; absent when it is not synced.
  [[nodiscard]] static std::optional<std::string> syncWarning(const FileUrl& url);
  [[nodiscard]] static std::optional<std::string> syncWarning(const FileUrl& url, std::string_view homeFolder);

  // A file named as evicted cloud files are: ".name.icloud".
  [[nodiscard]] static bool isDatalessCloudPlaceholder(const FileUrl& url) noexcept;
  [[nodiscard]] static bool isPlaceholderName(std::string_view name) noexcept;
};

}  // namespace orvane
