#include "core/map/FileKinds.h"

#include "core/base/files/PathText.h"
#include "core/base/text/AsciiText.h"
#include "core/organizer/categories/OrganizerCategories.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

// The organizer's categories by how they begin, the first row deciding.
struct KindRow {
  std::string_view categoryStart;
  MapKind kind;
};
constexpr std::array kindRows{
    KindRow{"Media/Images", MapKind::pictures}, KindRow{"Media/Screenshots", MapKind::pictures},
    KindRow{"Media/Videos", MapKind::videos},   KindRow{"Media/Audio", MapKind::audio},
    KindRow{"Documents", MapKind::documents},   KindRow{"Archives", MapKind::archives},
    KindRow{"Installers", MapKind::installers}, KindRow{"Development", MapKind::source},
};
constexpr std::size_t longestExtension = 12;

MapKind kindOfExtension(std::string_view extension, const SystemProfile& profile) {
  auto category = defaultCategoryNameForExtension(extension, {});
  if (category == otherCategory) {
    const auto kinds = profile.fileKinds();
    const auto row = std::find_if(kinds.begin(), kinds.end(), [&](const auto& k) { return k.extension == extension; });
    if (row != kinds.end()) category = row->category;
  }
  for (const auto& row : kindRows) {
    if (category.starts_with(row.categoryStart)) return row.kind;
  }
  return MapKind::other;
}

}  // namespace

MapKind FileKinds::kindOf(std::string_view name) {
  const auto extension = splitName(name).extension;
  if (extension.empty() || extension.size() > longestExtension) return MapKind::other;
  std::array<char, longestExtension> lower{};
  std::transform(extension.begin(), extension.end(), lower.begin(), lowerAscii);
  const std::string_view wanted(lower.data(), extension.size());
  if (wanted != m_extension) {
    m_kind = kindOfExtension(wanted, m_profile);
    m_extension = wanted;
  }
  return m_kind;
}

}  // namespace orvane
