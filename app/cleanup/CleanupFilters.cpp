#include "app/cleanup/CleanupFilters.h"

#include "app/common/Text.h"

namespace orvane {

QVariantList filterChips(const CleanupQuery& query, const FileUrl& home) {
  QVariantList result;
  const auto add = [&result](CleanupFilter filter, const QString& text) {
    result.append(QVariantMap{{QStringLiteral("filter"), static_cast<int>(filter)}, {QStringLiteral("text"), text}});
  };
  if (!query.searchText.empty()) {
    add(CleanupFilter::search, localizedText("cleanup.filter_search").arg(shownName(query.searchText)));
  }
  if (query.risk) add(CleanupFilter::risk, localizedText("risk." + std::string(rawValue(*query.risk))));
  if (query.category) {
    add(CleanupFilter::category, localizedText("category." + std::string(rawValue(*query.category))));
  }
  if (!query.folder.empty()) add(CleanupFilter::folder, shownPath(query.folder, home));
  if (!query.inside.empty()) add(CleanupFilter::inside, shownPath(query.inside, home));
  return result;
}

CleanupQuery withoutFilter(CleanupQuery query, CleanupFilter filter) {
  switch (filter) {
    case CleanupFilter::search:
      query.searchText.clear();
      break;
    case CleanupFilter::risk:
      query.risk.reset();
      break;
    case CleanupFilter::category:
      query.category.reset();
      break;
    case CleanupFilter::folder:
      query.folder.clear();
      break;
    case CleanupFilter::inside:
      query.inside.clear();
      break;
  }
  return query;
}

CleanupQuery withoutFilters(const CleanupQuery& query) {
  CleanupQuery result;
  result.order = query.order;
  result.isReversed = query.isReversed;
  return result;
}

}  // namespace orvane
