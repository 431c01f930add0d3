#include "core/duplicates/DuplicateKeepStrategy.h"

namespace orvane {

std::string_view rawValue(DuplicateKeepStrategy strategy) noexcept {
  switch (strategy) {
    case DuplicateKeepStrategy::keepOldest:
      return "Keep Oldest File";
    case DuplicateKeepStrategy::keepShortestPath:
      return "Keep Shortest Path";
  }
  return {};
}

std::optional<DuplicateKeepStrategy> duplicateKeepStrategyFromRawValue(std::string_view text) noexcept {
  for (const auto strategy : allDuplicateKeepStrategies) {
    if (rawValue(strategy) == text) return strategy;
  }
  return std::nullopt;
}

}  // namespace orvane
