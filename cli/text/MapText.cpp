#include "cli/text/MapText.h"

#include "cli/frame/FileArguments.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "core/base/files/PathText.h"
#include "core/base/files/PlaceText.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Calendar.h"
#include "core/tasks/MapTask.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace orvane::cli {
namespace {

using Index = StorageMap::Index;

// Rows of one folder; the JSON has them all.
constexpr std::size_t rowsShown = 20;
constexpr std::size_t maxShown = 10;
constexpr std::size_t sharesShown = 3;

std::vector<Index> bySize(const StorageMap& map, Index index) {
  const auto children = map.children(index);
  std::vector<Index> order(children.begin(), children.end());
  std::sort(order.begin(), order.end(), [&](Index one, Index other) {
    const auto oneBytes = map.folder(one).total.diskBytes;
    const auto otherBytes = map.folder(other).total.diskBytes;
    return oneBytes != otherBytes ? oneBytes > otherBytes : map.folder(one).name < map.folder(other).name;
  });
  return order;
}

std::string signedBytes(std::int64_t bytes) {
  if (bytes == 0) return "same";
  return bytes > 0 ? "+" + formatByteCount(bytes) : "-" + formatByteCount(-bytes);
}

// Empty where nothing is known.
std::string grownText(const std::optional<MapGrowth>& growth, Index index) {
  if (!growth) return {};
  const auto& bytes = growth->byFolder[index];
  return bytes.has_value() ? signedBytes(*bytes) : std::string();
}

Cell stateCell(MapState state) {
  if (state == MapState::yours) return {};
  if (state == MapState::reclaimable) return {"reclaimable", Colour::green};
  if (state == MapState::otherFileSystem) return {"other file system"};
  return {std::string(mapStates[state].rawValue), Colour::yellow};
}

class MapTable {
 public:
  MapTable(const StorageMap& map, const std::optional<MapGrowth>& growth) : m_map(map), m_growth(growth) {
    std::vector<Table::Column> columns{
        {"On disk", Alignment::right}, {"Length", Alignment::right}, {"Files", Alignment::right}};
    if (growth) columns.push_back({"Grown", Alignment::right});
    columns.push_back({"State"});
    columns.push_back({"Folder"});
    m_table = Table(std::move(columns));
  }

  void add(Index index, int level, int depth) {
    const auto& folder = m_map.folder(index);
    const auto name = level == 0 ? shownPath(FileUrl(folder.name)) : escapedForDisplay(folder.name) + "/";
    addRow(folder.total, grownText(m_growth, index), stateCell(folder.state), name, level);
    if (level == depth) return;
    const auto order = bySize(m_map, index);
    MapSum others;
    for (std::size_t row = 0; row < order.size(); ++row) {
      if (row < rowsShown) {
        add(order[row], level + 1, depth);
      } else {
        others += m_map.folder(order[row]).total;
      }
    }
    if (order.size() <= rowsShown) return;
    const auto left = static_cast<std::int64_t>(order.size() - rowsShown);
    addRow(others, "", {}, fmt::format("({} smaller folders)", formatCount(left)), level + 1);
  }

  void print(Session& session) const { m_table.print(session); }

 private:
  void addRow(const MapSum& sum, std::string grown, Cell state, const std::string& name, int level) {
    std::vector<Cell> cells{
        {formatByteCount(sum.diskBytes)}, {formatByteCount(sum.logicalBytes)}, {formatCount(sum.files)}};
    if (m_growth) cells.push_back({std::move(grown)});
    cells.push_back(std::move(state));
    cells.push_back({std::string(static_cast<std::size_t>(level) * 2, ' ') + name});
    m_table.addRow(std::move(cells));
  }

  const StorageMap& m_map;
  const std::optional<MapGrowth>& m_growth;
  Table m_table{{}};
};

void printFiles(Session& session, const StorageMap& map) {
  struct Found {
    Index folder;
    const StorageMap::File* file;
  };
  std::vector<Found> files;
  for (std::size_t index = 0; index < map.folderCount(); ++index) {
    for (const auto& file : map.folder(static_cast<Index>(index)).files) {
      files.push_back({static_cast<Index>(index), &file});
    }
  }
  const auto shown = std::min(files.size(), maxShown);
  std::partial_sort(files.begin(), files.begin() + static_cast<std::ptrdiff_t>(shown), files.end(),
                    [](const Found& one, const Found& other) { return one.file->diskBytes > other.file->diskBytes; });
  if (shown == 0) return;
  Table table({{"On disk", Alignment::right}, {"Length", Alignment::right}, {"Largest files"}});
  for (std::size_t row = 0; row < shown; ++row) {
    const auto& [folder, file] = files[row];
    const FileUrl place(joinPath(map.pathOf(folder), map.folder(folder).nameOf(*file)));
    table.addRow({{formatByteCount(file->diskBytes)}, {formatByteCount(file->logicalBytes)}, {shownPath(place)}});
  }
  session.out().line("");
  table.print(session);
}

void printGrowth(Session& session, const FolderMap& map, const MapGrowth& growth) {
  session.out().line("");
  session.out().line(fmt::format("{} since {}.", signedBytes(growth.bytes), formatDateTime(growth.since)));
  for (const auto& folder : growth.folders) {
    session.out().line(
        fmt::format("  {} {}", signedBytes(folder.bytes), shownPath(FileUrl(map.map.pathOf(folder.folder)))));
  }
  for (const auto& kind : growth.kinds) {
    session.out().line(fmt::format("  {} {}", signedBytes(kind.bytes), mapKinds[kind.kind].rawValue));
  }
  const auto shares = map.map.mostReclaimable(sharesShown);
  if (!shares.empty()) session.out().line("Most can go here:");
  for (const auto& [folder, bytes] : shares) {
    session.out().line(fmt::format("  {} {}", formatByteCount(bytes), shownPath(FileUrl(map.map.pathOf(folder)))));
  }
}

Json folderJson(const StorageMap& map, const std::optional<MapGrowth>& growth, Index index, int depth) {
  const auto& folder = map.folder(index);
  Json children = Json::array();
  if (depth > 0) {
    for (const auto child : bySize(map, index)) children.push_back(folderJson(map, growth, child, depth - 1));
  }
  Json grown;
  if (growth && growth->byFolder[index]) grown = *growth->byFolder[index];
  return Json{{"path", pathOrUrl(FileUrl(map.pathOf(index)))},
              {"diskBytes", folder.total.diskBytes},
              {"logicalBytes", folder.total.logicalBytes},
              {"files", folder.total.files},
              {"state", mapStates[folder.state].rawValue},
              {"children", std::move(children)},
              {"grownBytes", std::move(grown)}};
}

}  // namespace

void printMap(Session& session, const FolderMap& map, int depth) {
  MapTable table(map.map, map.growth);
  table.add(StorageMap::top, 0, depth);
  table.print(session);
  printFiles(session, map.map);
  if (map.growth) printGrowth(session, map, *map.growth);
  if (const auto days = daysUntilFull(map)) {
    session.out().line("");
    session.out().line(
        fmt::format("At the rate of the last two weeks the disk is full in {:.0f} days.", std::ceil(*days)));
  }
  const auto& top = map.map.folder(StorageMap::top);
  session.out().line("");
  session.out().line(fmt::format(
      "{} on the disk in {} files and {} folders.{}", formatByteCount(top.total.diskBytes),
      formatCount(top.total.files), formatCount(static_cast<std::int64_t>(map.map.folderCount())),
      map.map.unreadableCount() == 0
          ? std::string()
          : fmt::format(" {} could not be read: what they hold is unknown.", formatCount(map.map.unreadableCount()))));
}

Json mapJson(const FolderMap& map, int depth) {
  return folderJson(map.map, map.growth, StorageMap::top, depth);
}

void printMomentsTable(Session& session, std::span<const MapMoment> moments) {
  if (moments.empty()) return;
  Table table({{"Taken"}, {"On disk", Alignment::right}, {"Free", Alignment::right}, {"Folder"}});
  for (const auto& moment : moments) {
    table.addRow({{formatDateTime(moment.taken)},
                  {formatByteCount(moment.diskBytes)},
                  {moment.freeBytes < 0 ? std::string() : formatByteCount(moment.freeBytes)},
                  {shownPath(FileUrl(moment.root))}});
  }
  table.print(session);
}

Json momentJson(const MapMoment& moment) {
  return Json{{"taken", jsonFromDate(moment.taken)},
              {"path", pathOrUrl(FileUrl(moment.root))},
              {"diskBytes", moment.diskBytes},
              {"freeBytes", moment.freeBytes < 0 ? Json() : Json(moment.freeBytes)}};
}

}  // namespace orvane::cli
