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
  if (extension.empty() || extension.size() > maxExtensionBytes) return MapKind::other;
  Known wanted{.length = extension.size()};
  std::transform(extension.begin(), extension.end(), wanted.extension.begin(), lowerAscii);
  const auto known = std::ranges::find_if(
      m_known, [&](const Known& one) { return one.length == wanted.length && one.extension == wanted.extension; });
  if (known != m_known.end()) return known->kind;
  wanted.kind = kindOfExtension({wanted.extension.data(), wanted.length}, m_profile);
  m_known[m_oldest++ % m_known.size()] = wanted;
  return wanted.kind;
}

}  // namespace orvane
