#pragma once

#include "core/map/records/MapKind.h"
#include "core/platform/SystemProfile.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace orvane {

// Names the kind of each file of one folder. Remembers the last few extensions, as neighbours mostly share theirs: each
// look at the tables compares hundreds.
class FileKinds {
 public:
  // `profile` must outlive this object.
  explicit FileKinds(const SystemProfile& profile) noexcept : m_profile(profile) {}
  [[nodiscard]] MapKind kindOf(std::string_view name);

 private:
  static constexpr std::size_t maxExtensionBytes = 12;
  struct Known {
    std::array<char, maxExtensionBytes> extension{};
    std::size_t length = 0;
    MapKind kind = MapKind::other;
  };

  const SystemProfile& m_profile;
  std::array<Known, 8> m_known{};
  std::size_t m_oldest = 0;
};

}  // namespace orvane
