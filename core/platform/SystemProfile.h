#pragma once

#include <span>
#include <string_view>

namespace orvane {

// The data that a system adds to the given tables. Rows of a profile are asked after the given ones and change none
// of them; without a profile everything answers as the given tables say.
class SystemProfile {
 public:
  virtual ~SystemProfile() = default;

  struct FileKind {
    std::string_view extension;  // lower case, without the dot
    std::string_view category;   // of the organizer
  };
  [[nodiscard]] virtual std::span<const FileKind> fileKinds() const noexcept { return {}; }
  // Folders that nobody may grant, nor anything in them. Absolute.
  [[nodiscard]] virtual std::span<const std::string_view> systemFolders() const noexcept { return {}; }

  [[nodiscard]] static const SystemProfile& none() noexcept {
    static const SystemProfile profile;
    return profile;
  }
};

}  // namespace orvane
