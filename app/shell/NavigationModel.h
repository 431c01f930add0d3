#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>

namespace orvane {

// The sections of the sidebar.
class NavigationModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")

 public:
  enum Role { SectionRole = Qt::UserRole + 1, TitleKeyRole, SymbolRole, GroupRole };

  using QAbstractListModel::QAbstractListModel;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

}  // namespace orvane
