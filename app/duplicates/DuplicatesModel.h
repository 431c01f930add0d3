#pragma once

#include "app/common/RunModel.h"
#include "app/duplicates/DuplicateGroups.h"
#include "core/duplicates/records/DuplicateProgress.h"
#include "core/tasks/DuplicatesTask.h"
#include "core/tasks/Proposal.h"

#include <QtQml/qqmlregistration.h>
#include <QStringList>
#include <QVariantList>

#include <cstdint>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// The groups of identical files, largest first, and the copies of those that are unfolded, as rows of one list.
class DuplicatesModel : public orvane::RunModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool isSearching READ isSearching NOTIFY searchChanged)
  Q_PROPERTY(bool hasSearched READ hasSearched NOTIFY searchChanged)
  Q_PROPERTY(QStringList keepKeys READ keepKeys CONSTANT)
  Q_PROPERTY(int keepStrategy READ keepStrategy WRITE setKeepStrategy NOTIFY keepStrategyChanged)
  Q_PROPERTY(int stage READ stage NOTIFY stageChanged)
  Q_PROPERTY(double filesFound READ filesFound NOTIFY stageChanged)
  Q_PROPERTY(double filesLeft READ filesLeft NOTIFY stageChanged)
  Q_PROPERTY(double stageFiles READ stageFiles NOTIFY stageChanged)
  Q_PROPERTY(double bytesLeft READ bytesLeft NOTIFY stageChanged)
  Q_PROPERTY(int groupCount READ groupCount NOTIFY selectionChanged)
  Q_PROPERTY(double selectedCount READ selectedCount NOTIFY selectionChanged)
  Q_PROPERTY(double selectedBytes READ selectedBytes NOTIFY selectionChanged)
  Q_PROPERTY(QVariantList roots READ roots NOTIFY rootsChanged)
  Q_PROPERTY(QVariantList references READ references NOTIFY rootsChanged)
  Q_PROPERTY(QString refusal READ refusal NOTIFY refusalChanged)
  Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY queryChanged)
  Q_PROPERTY(double shownSelectedCount READ shownSelectedCount NOTIFY selectionChanged)
  Q_PROPERTY(double shownSelectedBytes READ shownSelectedBytes NOTIFY selectionChanged)

 public:
  enum Role {
    KindRole = Qt::UserRole + 1,
    NameRole,
    PlaceRole,
    CopiesRole,
    BytesRole,
    FreedRole,
    DateRole,
    CheckStateRole,
    IsKeptRole,
    ThumbnailRole,
    SymbolRole,
    ExpandedRole,
    CanToggleRole,
    KeptReasonRole,
  };
  enum Kind { Header, Copy };
  Q_ENUM(Kind)

  explicit DuplicatesModel(WindowServices services, QObject* parent = nullptr);
  ~DuplicatesModel() override;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] bool isSearching() const noexcept { return m_isSearching; }
  [[nodiscard]] bool hasSearched() const noexcept { return m_hasSearched; }
  // Keys of texts, as KeepRule::By counts.
  [[nodiscard]] static QStringList keepKeys() {
    return {QStringLiteral("duplicates.keep_oldest"), QStringLiteral("duplicates.keep_shortest"),
            QStringLiteral("duplicates.keep_newest"), QStringLiteral("duplicates.keep_in_folder")};
  }
  // As KeepRule::By counts. Choosing one applies it to every group; a folder is chosen by keepIn().
  [[nodiscard]] int keepStrategy() const noexcept { return static_cast<int>(m_keep.by); }
  void setKeepStrategy(int strategy);
  Q_INVOKABLE void keepIn(const QString& folder);
  [[nodiscard]] int stage() const noexcept { return static_cast<int>(m_progress.stage); }
  [[nodiscard]] double filesFound() const noexcept { return static_cast<double>(m_progress.filesFound); }
  [[nodiscard]] double filesLeft() const noexcept { return static_cast<double>(m_progress.filesLeft); }
  // Files of the stage, done or not.
  [[nodiscard]] double stageFiles() const noexcept { return static_cast<double>(m_stageFiles); }
  [[nodiscard]] double bytesLeft() const noexcept { return static_cast<double>(m_progress.bytesLeft); }
  [[nodiscard]] int groupCount() const noexcept { return m_groups.groupCount(); }
  [[nodiscard]] double selectedCount() const noexcept { return static_cast<double>(m_selection.count()); }
  [[nodiscard]] double selectedBytes() const noexcept { return static_cast<double>(m_selection.bytes()); }
  // Sets with a copy that has the text in its path, ignoring case, are shown, and no others.
  [[nodiscard]] QString searchText() const;
  void setSearchText(const QString& text);
  // Of the sets that are shown.
  [[nodiscard]] double shownSelectedCount() const { return static_cast<double>(shownSum().count); }
  [[nodiscard]] double shownSelectedBytes() const { return static_cast<double>(shownSum().bytes); }
  // {path, name, included} of the granted folders.
  [[nodiscard]] QVariantList roots() const;
  // {path, name} of the folders that are compared with and never touched.
  [[nodiscard]] QVariantList references() const;
  // Why the last click on a copy changed nothing; empty when it did.
  [[nodiscard]] QString refusal() const;

  Q_INVOKABLE void search();
  // Only this folder is searched, until it is left out; nothing changes where it may not be touched.
  Q_INVOKABLE void chooseFolder(const QString& pathOrUrl);
  Q_INVOKABLE void toggle(int row);
  Q_INVOKABLE void toggleExpanded(int row);
  Q_INVOKABLE void setRootIncluded(const QString& path, bool isIncluded);
  Q_INVOKABLE void addReference(const QString& url);
  Q_INVOKABLE void removeReference(const QString& path);
  Q_INVOKABLE void cleanSelected();
  // Of what is selected, only what the search shows.
  Q_INVOKABLE void cleanShown();
  // {name, place, picture, created, modified, isKept} of each copy of the set that a row belongs to.
  [[nodiscard]] Q_INVOKABLE QVariantList copiesAt(int row) const;
  Q_INVOKABLE void openContainingFolder(int row);
  // Puts a copy on the keep list, and takes it out.
  Q_INVOKABLE void keep(int row);
  // Of a set of copies the first.
  [[nodiscard]] QString placeAt(int row) const override;
  // The search, or the run.
  Q_INVOKABLE void cancel() override;

  // The granted folders may be new.
  void reloadRoots();
  void languageChanged() override;

 Q_SIGNALS:
  void searchChanged();
  void stageChanged();
  void keepStrategyChanged();
  void selectionChanged();
  void rootsChanged();
  void refusalChanged();
  void queryChanged();

 protected:
  [[nodiscard]] QString movedText(std::int64_t count, std::int64_t bytes) const override;
  [[nodiscard]] QString failureText(const MoveOutcome& failure) const override;

 private:
  using Group = DuplicateGroups::Group;

  [[nodiscard]] RowSum shownSum() const { return m_groups.shownSum(m_proposal, m_selection); }
  [[nodiscard]] const FileItem& item(std::uint32_t copy) const { return m_proposal.row(copy).item; }
  [[nodiscard]] QVariant groupData(const Group& group, int role) const;
  [[nodiscard]] QVariant copyData(std::uint32_t copy, int role) const;
  void setProposal(Proposal proposal);
  void clean(const Selection& selection);
  void keepBy(const KeepRule& rule);
  [[nodiscard]] QString keptReason(const Group& group) const;
  void noteProgress(const DuplicateProgress& progress);
  void showMoved(const RunReport& report);
  void showBack(const std::vector<std::uint32_t>& back);
  void setRefusal(std::string_view key);
  // Of a copy that cannot be chosen: the key of the text that says why.
  [[nodiscard]] std::string_view lockKey(std::uint32_t copy) const;

  std::vector<FileUrl> m_roots;
  std::optional<FileUrl> m_chosen;  // in the place of the granted folders
  std::set<FileUrl> m_leftOut;
  std::vector<FileUrl> m_references;
  int m_generation = 0;  // goes up with each search: rows are those of one search
  KeepRule m_keep;
  bool m_isSearching = false;
  bool m_hasSearched = false;
  std::stop_source m_searchStop;
  DuplicateProgress m_progress;
  std::int64_t m_stageFiles = 0;
  Proposal m_proposal;
  Selection m_selection;
  DuplicateGroups m_groups;
  std::string m_refusalKey;
  BackgroundQueue m_searchQueue;
};

}  // namespace orvane
