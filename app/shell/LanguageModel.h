#pragma once

#include "app/common/BackgroundQueue.h"
#include "core/localization/records/AppLanguage.h"

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>

namespace orvane {

class LocalizationManager;

// The languages to choose from.
class LanguageModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(QString currentCode READ currentCode NOTIFY currentChanged)

 public:
  enum Role { CodeRole = Qt::UserRole + 1, NativeNameRole, CurrentRole };

  explicit LanguageModel(LocalizationManager& localization, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  // The language tag, such as "zh-Hans".
  [[nodiscard]] QString currentCode() const;
  // Takes effect at once, everywhere. An unknown tag changes nothing.
  Q_INVOKABLE void select(const QString& code);
  // Another process may have chosen one.
  void reload();

 Q_SIGNALS:
  void currentChanged();

 private:
  void use(AppLanguage language);

  LocalizationManager& m_localization;
  BackgroundQueue m_queue;  // last: its tasks use everything above
};

}  // namespace orvane
