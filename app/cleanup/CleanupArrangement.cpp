#include "app/cleanup/CleanupArrangement.h"

#include "app/common/Text.h"
#include "core/base/files/PathText.h"
#include "core/base/text/CaselessSearch.h"

#include <QCollator>

#include <algorithm>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t itemsPerLook = 4096;

class Filter {
 public:
  Filter(const ScannedItems::Snapshot& scanned, const CleanupQuery& query)
      : m_scanned(scanned), m_query(query), m_search(query.searchText) {}

  [[nodiscard]] bool admits(std::size_t index, const FileItem& item) const {
    if (m_scanned.gone[index] != 0) return false;
    if (m_query.risk && item.riskLabel() != *m_query.risk) return false;
    if (m_query.category && item.category() != *m_query.category) return false;
    if (!m_query.folder.empty() && shownFolder(m_scanned.items, index, m_scanned.folders) != m_query.folder)
      return false;
    if (!m_query.inside.empty() && !isSameOrInside(item.url().path(), m_query.inside) &&
        !isSameOrInside(m_query.inside, item.url().path()))
      return false;
    return m_query.searchText.empty() || m_search.isIn(item.url().path());
  }

 private:
  const ScannedItems::Snapshot& m_scanned;
  const CleanupQuery& m_query;
  CaselessSearch m_search;
};

// Sorts by a key that is made once for each item: reading it through the index in each comparison would take many times
// as long. Equal ones stay in the order of the scan.
template <typename KeyOf, typename Less>
void sortBy(std::vector<std::uint32_t>& items, KeyOf keyOf, Less less) {
  using Key = decltype(keyOf(std::uint32_t{}));
  std::vector<std::pair<Key, std::uint32_t>> keyed;
  keyed.reserve(items.size());
  for (const auto index : items) keyed.emplace_back(keyOf(index), index);
  std::sort(keyed.begin(), keyed.end(), [&](const auto& left, const auto& right) {
    if (less(left.first, right.first)) return true;
    if (less(right.first, left.first)) return false;
    return left.second < right.second;
  });
  std::transform(keyed.begin(), keyed.end(), items.begin(), [](const auto& entry) { return entry.second; });
}

void sortItems(std::vector<std::uint32_t>& items, const ItemList& list, CleanupOrder order) {
  switch (order) {
    case CleanupOrder::size:
      return sortBy(
          items, [&](auto index) { return list.item(index).fileSize(); }, std::greater<>());
    case CleanupOrder::date:
      return sortBy(
          items, [&](auto index) { return referenceSeconds(list.item(index).lastModifiedDate()); }, std::greater<>());
    case CleanupOrder::lastUse:
      // That of a folder that a tool made is its project's.
      return sortBy(
          items,
          [&](auto index) {
            const auto& item = list.item(index);
            return referenceSeconds(item.lastOpenedDate().value_or(item.lastModifiedDate()));
          },
          std::less<>());
    case CleanupOrder::name:
      break;
  }
  QCollator collator;
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  collator.setNumericMode(true);
  sortBy(
      items, [&](auto index) { return collator.sortKey(textFrom(list.item(index).url().lastPathComponent())); },
      [](const QCollatorSortKey& left, const QCollatorSortKey& right) { return left.compare(right) < 0; });
}

}  // namespace

std::optional<CleanupArrangement> arrangeForCleanup(const ScannedItems::Snapshot& scanned, const CleanupQuery& query,
                                                    const std::stop_token& stop) {
  CleanupArrangement result;
  const Filter filter(scanned, query);
  scanned.items.forEach([&](std::size_t index, const FileItem& item) {
    if (index % itemsPerLook == 0 && stop.stop_requested()) return false;
    if (!filter.admits(index, item)) return true;
    auto& section = result.sections[static_cast<std::size_t>(item.category())];
    section.items.push_back(static_cast<std::uint32_t>(index));
    section.bytes += item.fileSize();
    return true;
  });
  for (auto& section : result.sections) {
    if (stop.stop_requested()) return std::nullopt;
    sortItems(section.items, scanned.items, query.order);
    if (query.isReversed) std::ranges::reverse(section.items);
    section.items.shrink_to_fit();
  }
  if (stop.stop_requested()) return std::nullopt;
  return result;
}

}  // namespace orvane
