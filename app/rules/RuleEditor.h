#pragma once

#include "core/rules/records/RuleCheck.h"

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>
#include <span>
#include <vector>

namespace orvane {

// The rule that is being written, its conditions as rows of text, with what is wrong with it and how many files it
// would take.
class RuleEditor : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool isOpen READ isOpen NOTIFY opened)
  Q_PROPERTY(bool isNew READ isNew NOTIFY opened)
  Q_PROPERTY(bool isBuiltIn READ isBuiltIn NOTIFY opened)
  Q_PROPERTY(QString name MEMBER m_name NOTIFY edited)
  Q_PROPERTY(QString description MEMBER m_description NOTIFY edited)
  Q_PROPERTY(QStringList allCategories READ allCategories CONSTANT)
  Q_PROPERTY(QStringList actionKeys READ actionKeys CONSTANT)
  Q_PROPERTY(int action MEMBER m_action NOTIFY edited)
  Q_PROPERTY(QString actionPath READ actionPath WRITE setActionPath NOTIFY edited)
  Q_PROPERTY(QVariantMap problems READ problems NOTIFY checked)
  Q_PROPERTY(bool canSave READ canSave NOTIFY checked)
  Q_PROPERTY(double matchCount READ matchCount NOTIFY checked)
  Q_PROPERTY(double matchBytes READ matchBytes NOTIFY checked)

 public:
  enum Action { Trash, Folder, Review };
  Q_ENUM(Action)
  enum Role { TitleKeyRole = Qt::UserRole + 1, InputRole, ExampleRole, TextRole, ProblemKeyRole };
  // As RuleField::Input.
  enum Input { Text, FolderText, Categories, Number, Megabytes };
  Q_ENUM(Input)

  using QAbstractListModel::QAbstractListModel;

  // Shows a rule; a new one when absent.
  void open(const std::optional<CleanupRule>& rule);
  // Shows a new rule that begins as this one.
  void compose(const CleanupRule& rule);
  void close();

  // A row for each condition that a rule can have.
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
  // Of a folder its path, also as a dialog gives it.
  Q_INVOKABLE void edit(int row, const QString& text);

  [[nodiscard]] bool isOpen() const noexcept { return m_isOpen; }
  [[nodiscard]] bool isNew() const noexcept { return m_isNew; }
  [[nodiscard]] bool isBuiltIn() const noexcept { return m_rule.isBuiltIn; }
  // Names of all that a rule can ask for.
  [[nodiscard]] static QStringList allCategories();
  // Keys of texts, as Action counts.
  [[nodiscard]] static QStringList actionKeys() {
    return {QStringLiteral("rules.to_trash"), QStringLiteral("rules.to_a_folder"), QStringLiteral("rules.review_only")};
  }
  [[nodiscard]] QString actionPath() const { return m_actionPath; }
  void setActionPath(const QString& pathOrUrl);

  // Key of a text by the part of the rule, as RuleProblem names it.
  [[nodiscard]] const QVariantMap& problems() const noexcept { return m_problems; }
  [[nodiscard]] bool canSave() const noexcept { return m_problems.isEmpty(); }
  // -1 while it is being counted.
  [[nodiscard]] double matchCount() const noexcept { return m_matchCount; }
  [[nodiscard]] double matchBytes() const noexcept { return m_matchBytes; }

  // The rule as it stands.
  [[nodiscard]] CleanupRule rule() const;
  // -1 for a count that is not known yet.
  void setChecked(std::span<const RuleProblem> problems, double matchCount, double matchBytes);

 Q_SIGNALS:
  void opened();
  void edited();
  void checked();

 private:
  void show(CleanupRule rule);

  CleanupRule m_rule;  // its conditions as they stand
  bool m_isOpen = false;
  bool m_isNew = false;
  QString m_name;
  QString m_description;
  std::vector<QString> m_texts;  // of each condition, as it was typed
  int m_action = Trash;
  QString m_actionPath;
  QVariantMap m_problems;
  double m_matchCount = -1;
  double m_matchBytes = 0;
};

}  // namespace orvane
