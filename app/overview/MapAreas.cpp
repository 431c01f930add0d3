#include "app/overview/MapAreas.h"

#include <algorithm>
#include <cstddef>

namespace orvane {
namespace {

using Index = StorageMap::Index;

// More could not be told apart in the picture.
constexpr std::size_t maxAreas = 16;
constexpr std::size_t maxParts = 7;

std::int64_t bytesOf(const MapSum& sum, MapMeasure measure) noexcept {
  return measure == MapMeasure::disk ? sum.diskBytes : sum.logicalBytes;
}

class Picture {
 public:
  Picture(const StorageMap& map, const std::optional<MapGrowth>& growth, const std::vector<MapSum>& totals,
          const MapFilter& filter, MapMeasure measure)
      : m_map(map), m_growth(growth), m_totals(totals), m_filter(filter), m_measure(measure) {}

  [[nodiscard]] std::vector<MapArea> areas(Index index, std::size_t maxShown) const {
    std::vector<MapArea> areas;
    addFolders(index, areas);
    addFiles(index, areas);
    const auto isLarger = [](const MapArea& one, const MapArea& other) {
      return one.bytes != other.bytes ? one.bytes > other.bytes : one.name < other.name;
    };
    const auto shown = std::min(maxShown, areas.size());
    std::partial_sort(areas.begin(), areas.begin() + static_cast<std::ptrdiff_t>(shown), areas.end(), isLarger);
    areas.resize(shown);
    for (auto& area : areas) {
      if (area.kind == MapArea::Kind::folder) area.name = m_map.folder(area.folder).name;
    }
    addRest(index, areas);
    return areas;
  }

 private:
  void addFolders(Index index, std::vector<MapArea>& areas) const {
    for (const auto child : m_map.children(index)) {
      const auto bytes = bytesOf(m_totals[child], m_measure);
      if (bytes <= 0) continue;
      MapArea area{MapArea::Kind::folder, child, {}, bytes, m_totals[child].files, m_map.folder(child).state};
      if (m_growth) area.grownBytes = m_growth->byFolder[child];
      areas.push_back(std::move(area));
    }
  }
  void addFiles(Index index, std::vector<MapArea>& areas) const {
    const auto& folder = m_map.folder(index);
    for (const auto& file : folder.files) {
      const auto bytes = m_measure == MapMeasure::disk ? file.diskBytes : file.logicalBytes;
      if (bytes <= 0 || !m_filter.admits(file.traits)) continue;
      auto state = folder.state == MapState::reclaimable ? MapState::yours : folder.state;
      if (file.traits.isReclaimable) state = MapState::reclaimable;
      areas.push_back({MapArea::Kind::file, index, std::string(folder.nameOf(file)), bytes, 1, state});
    }
  }
  void addRest(Index index, std::vector<MapArea>& areas) const {
    MapArea rest{.bytes = bytesOf(m_totals[index], m_measure), .files = m_totals[index].files};
    for (const auto& area : areas) {
      rest.bytes -= area.bytes;
      rest.files -= area.files;
    }
    if (rest.bytes > 0) areas.push_back(std::move(rest));
  }

  const StorageMap& m_map;
  const std::optional<MapGrowth>& m_growth;
  const std::vector<MapSum>& m_totals;
  const MapFilter& m_filter;
  MapMeasure m_measure;
};

}  // namespace

std::vector<MapArea> mapAreas(const StorageMap& map, const std::optional<MapGrowth>& growth, StorageMap::Index folder,
                              const std::vector<MapSum>& totals, const MapFilter& filter, MapMeasure measure) {
  const Picture picture(map, growth, totals, filter, measure);
  auto areas = picture.areas(folder, maxAreas);
  for (auto& area : areas) {
    if (area.kind == MapArea::Kind::folder) area.parts = picture.areas(area.folder, maxParts);
  }
  return areas;
}

}  // namespace orvane
