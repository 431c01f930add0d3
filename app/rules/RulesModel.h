#pragma once

#include "app/common/RunModel.h"
#include "app/rules/RuleEditor.h"
#include "core/rules/records/CleanupRule.h"
#include "core/tasks/ItemList.h"
#include "core/tasks/Proposal.h"

#include <QtQml/qqmlregistration.h>
#include <QStringList>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace orvane {

// The cleanup rules, in their order, with an editor, a preview of what they would take, and running them.
class RulesModel : public orvane::RunModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(int ruleCount READ ruleCount NOTIFY rulesChanged)
  Q_PROPERTY(int enabledCount READ enabledCount NOTIFY rulesChanged)
  Q_PROPERTY(orvane::RuleEditor* editor READ editor CONSTANT)
  Q_PROPERTY(QVariantList preview READ preview NOTIFY previewChanged)
  Q_PROPERTY(double previewCount READ previewCount NOTIFY previewChanged)
  Q_PROPERTY(double previewBytes READ previewBytes NOTIFY previewChanged)
  Q_PROPERTY(double movableCount READ movableCount NOTIFY previewChanged)
  Q_PROPERTY(double movableBytes READ movableBytes NOTIFY previewChanged)
  Q_PROPERTY(QString movableSums READ movableSums NOTIFY previewChanged)
  Q_PROPERTY(QStringList previewRemarks READ previewRemarks NOTIFY previewChanged)
  Q_PROPERTY(bool isPreviewing READ isPreviewing NOTIFY previewChanged)
  Q_PROPERTY(QString error READ error NOTIFY rulesChanged)
  // {name, title, note} of those that this system suggests and that are no rule yet.
  Q_PROPERTY(QVariantList suggestions READ suggestions NOTIFY rulesChanged)

 public:
  enum Role {
    IdRole = Qt::UserRole + 1,
    NameRole,
    DescriptionRole,
    IsEnabledRole,
    IsBuiltInRole,
    ActionRole,
    ActionPathRole,
    ConditionsRole,  // in the user's language
  };

  explicit RulesModel(WindowServices services, QObject* parent = nullptr);
  ~RulesModel() override;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] int ruleCount() const noexcept { return static_cast<int>(m_rules.size()); }
  [[nodiscard]] int enabledCount() const;
  [[nodiscard]] RuleEditor* editor() noexcept { return &m_editor; }
  // {name, place, bytes, date, risk, reason, warning} of the first few hundred files.
  [[nodiscard]] QVariantList preview() const;
  [[nodiscard]] double previewCount() const noexcept { return static_cast<double>(m_preview.all.count); }
  [[nodiscard]] double previewBytes() const noexcept { return static_cast<double>(m_preview.all.bytes); }
  // Of these, what the rules would move: some only show.
  [[nodiscard]] double movableCount() const noexcept { return static_cast<double>(m_preview.movable.count); }
  [[nodiscard]] double movableBytes() const noexcept { return static_cast<double>(m_preview.movable.bytes); }
  // How much would go to the Trash and how much to folders, a line each.
  [[nodiscard]] QString movableSums() const;
  // The file of a row of the preview.
  [[nodiscard]] Q_INVOKABLE QString previewPlace(int row) const;
  // The notices beside the files, a line each.
  [[nodiscard]] QStringList previewRemarks() const;
  [[nodiscard]] bool isPreviewing() const noexcept { return m_isPreviewing; }
  // Why the last change was not stored; empty when it was.
  [[nodiscard]] QString error() const { return m_error; }
  [[nodiscard]] QVariantList suggestions() const;

  Q_INVOKABLE void setEnabled(int row, bool isEnabled);
  Q_INVOKABLE void add();
  // Opens the editor with a new rule that begins as this one.
  void compose(const CleanupRule& rule);
  Q_INVOKABLE void addSuggested(const QString& name);
  Q_INVOKABLE void edit(int row);
  Q_INVOKABLE void save();
  Q_INVOKABLE void closeEditor();
  // By its identity: rows may be others by the time somebody has made up his mind.
  Q_INVOKABLE void remove(const QString& id);
  // The user's own rules go.
  Q_INVOKABLE void reset();
  // Of one rule, on or off; -1 for all that are on.
  Q_INVOKABLE void previewRule(int row);
  Q_INVOKABLE void closePreview();
  // Moves what the preview shows, as it was then.
  Q_INVOKABLE void runPreviewed();
  Q_INVOKABLE void cancel() override;

  // The rules may have been changed by another process.
  void reload();
  void languageChanged() override;

 Q_SIGNALS:
  void rulesChanged();
  void previewChanged();

 protected:
  [[nodiscard]] QString movedText(std::int64_t count, std::int64_t bytes) const override;

 private:
  struct Preview {
    Proposal proposal;
    RowSum all;
    RowSum movable;
    RowSum toFolders;  // of these
  };

  void show(std::vector<CleanupRule> rules);
  void show(Preview preview);
  // Has a change stored in the background, and the rules read again.
  void change(std::function<void(const TaskServices&)> how);
  [[nodiscard]] std::vector<CleanupRule> meant(int row) const;
  void checkEditor();
  [[nodiscard]] QVariantMap rowOf(const ProposedRow& row) const;

  std::vector<CleanupRule> m_rules;
  RuleEditor m_editor;
  QTimer m_editTimer;
  std::stop_source m_checkStop;
  std::optional<ItemList> m_candidates;  // of the queue's thread: what the open editor counts
  Preview m_preview;
  bool m_isPreviewing = false;
  std::stop_source m_previewStop;
  QString m_error;
  BackgroundQueue m_queue;
  BackgroundQueue m_previewQueue;
};

}  // namespace orvane
