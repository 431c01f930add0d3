#pragma once

#include "core/map/records/MapKind.h"
#include "core/platform/SystemProfile.h"

#include <string>
#include <string_view>

namespace orvane {

// Names the kind of each file of one folder. Remembers the last extension, as neighbours mostly share theirs.
class FileKinds {
 public:
  // `profile` must outlive this object.
  explicit FileKinds(const SystemProfile& profile) noexcept : m_profile(profile) {}
  [[nodiscard]] MapKind kindOf(std::string_view name);

 private:
  const SystemProfile& m_profile;
  std::string m_extension;
  MapKind m_kind = MapKind::other;
};

}  // namespace orvane
