#include "core/duplicates/DuplicateFinderEngine.h"

#include "core/duplicates/DuplicateSearch.h"
#include "core/duplicates/SearchMonitor.h"

#include <algorithm>
#include <utility>

namespace orvane {
namespace {

std::vector<DuplicateGroup> mostWastedFirst(std::vector<DuplicateGroup> groups) {
  std::vector<std::pair<std::int64_t, std::size_t>> order;
  order.reserve(groups.size());
  for (std::size_t i = 0; i < groups.size(); ++i) order.emplace_back(groups[i].selectedWastedBytes(), i);
  std::stable_sort(order.begin(), order.end(),
                   [](const auto& left, const auto& right) { return left.first > right.first; });
  std::vector<DuplicateGroup> result;
  result.reserve(groups.size());
  for (const auto& [wasted, index] : order) result.push_back(std::move(groups[index]));
  return result;
}

}  // namespace

std::vector<DuplicateGroup> DuplicateFinderEngine::findDuplicates(const std::vector<FileUrl>& folders,
                                                                  DuplicateKeepStrategy strategy, std::stop_token stop,
                                                                  const Progress& progress) {
  const std::lock_guard lock(m_mutex);
  SearchMonitor monitor(std::move(stop), progress);
  auto groups = mostWastedFirst(DuplicateSearch(m_validator, m_statusReader, monitor).run(folders, strategy));
  return monitor.isStopped() ? std::vector<DuplicateGroup>() : groups;
}

}  // namespace orvane
