#include "app/shell/NavigationModel.h"

#include "app/common/Text.h"
#include "app/shell/AppNavigationItem.h"

namespace orvane {

int NavigationModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(navigationRows.size());
}

QVariant NavigationModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& row = navigationRows.at(static_cast<std::size_t>(index.row()));
  switch (role) {
    case SectionRole:
      return static_cast<int>(row.section);
    case TitleKeyRole:
      return textFrom(row.titleKey);
    case SymbolRole:
      return textFrom(row.symbol);
    case GroupRole:
      return row.group;
    default:
      return {};
  }
}

QHash<int, QByteArray> NavigationModel::roleNames() const {
  return {{SectionRole, "section"}, {TitleKeyRole, "titleKey"}, {SymbolRole, "symbol"}, {GroupRole, "group"}};
}

}  // namespace orvane
