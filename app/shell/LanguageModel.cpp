#include "app/shell/LanguageModel.h"

#include "app/common/Text.h"
#include "core/localization/LocalizationManager.h"

#include <QDebug>

#include <system_error>

namespace orvane {

LanguageModel::LanguageModel(LocalizationManager& localization, QObject* parent)
    : QAbstractListModel(parent), m_localization(localization) {}

int LanguageModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(allAppLanguages.size());
}

QVariant LanguageModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto language = allAppLanguages.at(static_cast<std::size_t>(index.row()));
  switch (role) {
    case CodeRole:
      return textFrom(rawValue(language));
    case Qt::DisplayRole:
    case NativeNameRole:
      return textFrom(nativeName(language));
    case CurrentRole:
      return language == m_localization.currentLanguage();
    default:
      return {};
  }
}

QHash<int, QByteArray> LanguageModel::roleNames() const {
  return {{CodeRole, "code"}, {NativeNameRole, "nativeName"}, {CurrentRole, "current"}};
}

QString LanguageModel::currentCode() const {
  return textFrom(rawValue(m_localization.currentLanguage()));
}

void LanguageModel::select(const QString& code) {
  const auto language = appLanguageFromRawValue(code.toStdString());
  if (!language || *language == m_localization.currentLanguage()) return;
  use(*language);
  m_queue.post([this, language = *language](const std::stop_token&) {
    try {
      m_localization.rememberLanguage(language);
    } catch (const std::system_error& error) {
      qWarning("The language cannot be remembered: %s", error.what());
    }
  });
}

void LanguageModel::reload() {
  // After what select() has yet to remember.
  m_queue.post([this](const std::stop_token&) {
    callOn(this, [this, language = m_localization.rememberedLanguage()] {
      if (language != m_localization.currentLanguage()) use(language);
    });
  });
}

void LanguageModel::use(AppLanguage language) {
  m_localization.useLanguage(language);
  Q_EMIT dataChanged(index(0), index(rowCount() - 1), {CurrentRole});
  Q_EMIT currentChanged();
}

}  // namespace orvane
