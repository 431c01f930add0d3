#pragma once

#include "app/common/RunModel.h"
#include "core/tasks/OrganizeTask.h"

#include <QtQml/qqmlregistration.h>
#include <QStringList>
#include <QVariantList>

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// The organizer's proposal for one folder: groups by category, and the moves of those that are unfolded, as rows of
// one list that the user edits before it is carried out.
class OrganizeModel : public orvane::RunModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(QString folder READ folder NOTIFY setupChanged)
  Q_PROPERTY(QString folderName READ folderName NOTIFY setupChanged)
  Q_PROPERTY(QVariantList subfolders READ subfolders NOTIFY setupChanged)
  Q_PROPERTY(QString destination READ destination NOTIFY setupChanged)
  Q_PROPERTY(QString destinationName READ destinationName NOTIFY setupChanged)
  Q_PROPERTY(QStringList strategyKeys READ strategyKeys CONSTANT)
  Q_PROPERTY(int strategy READ strategy WRITE setStrategy NOTIFY setupChanged)
  Q_PROPERTY(bool includeSubfolders READ includeSubfolders WRITE setIncludeSubfolders NOTIFY setupChanged)
  Q_PROPERTY(bool useTopics READ useTopics WRITE setUseTopics NOTIFY setupChanged)
  Q_PROPERTY(bool topicsAvailable READ topicsAvailable NOTIFY setupChanged)
  Q_PROPERTY(QVariantList managedFolders READ managedFolders NOTIFY setupChanged)
  Q_PROPERTY(bool isSearching READ isSearching NOTIFY searchChanged)
  Q_PROPERTY(bool hasAnalyzed READ hasAnalyzed NOTIFY searchChanged)
  Q_PROPERTY(double moveCount READ moveCount NOTIFY selectionChanged)
  Q_PROPERTY(double selectedCount READ selectedCount NOTIFY selectionChanged)
  Q_PROPERTY(double selectedBytes READ selectedBytes NOTIFY selectionChanged)
  Q_PROPERTY(QString learned READ learned NOTIFY learnedChanged)
  Q_PROPERTY(QStringList notices READ notices NOTIFY searchChanged)

 public:
  enum Role {
    KindRole = Qt::UserRole + 1,
    NameRole,
    FromRole,
    ToRole,
    BytesRole,
    CountRole,
    CheckStateRole,
    ExpandedRole,
    IsFolderRole,
    SymbolRole,
    ReasonRole,
  };
  enum Kind { Header, Move };
  Q_ENUM(Kind)

  explicit OrganizeModel(WindowServices services, QObject* parent = nullptr);
  ~OrganizeModel() override;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  // Empty until one is chosen.
  [[nodiscard]] QString folder() const;
  [[nodiscard]] QString folderName() const;
  [[nodiscard]] QVariantList subfolders() const;
  // Where the category folders are made.
  [[nodiscard]] QString destination() const;
  [[nodiscard]] QString destinationName() const;
  // Keys of texts, as OrganizationStrategy counts.
  [[nodiscard]] static QStringList strategyKeys() {
    return {QStringLiteral("organize.by_category"), QStringLiteral("organize.by_date"),
            QStringLiteral("organize.by_type")};
  }
  // As OrganizationStrategy counts.
  [[nodiscard]] int strategy() const noexcept { return static_cast<int>(m_strategy); }
  void setStrategy(int strategy);
  [[nodiscard]] bool includeSubfolders() const noexcept { return m_includeSubfolders; }
  void setIncludeSubfolders(bool isWanted);
  // Of documents, when they are organized by category.
  [[nodiscard]] bool useTopics() const noexcept { return m_useTopics; }
  void setUseTopics(bool isWanted);
  // Whether a language model on this machine can name them, and folder and strategy have a place for them.
  [[nodiscard]] bool topicsAvailable() const;
  [[nodiscard]] QVariantList managedFolders() const;

  [[nodiscard]] bool isSearching() const noexcept { return m_isSearching; }
  [[nodiscard]] bool hasAnalyzed() const noexcept { return m_hasAnalyzed; }
  [[nodiscard]] QString progressText() const override;
  [[nodiscard]] double moveCount() const noexcept { return static_cast<double>(m_proposal.size()); }
  [[nodiscard]] double selectedCount() const noexcept { return static_cast<double>(m_selection.count()); }
  [[nodiscard]] double selectedBytes() const noexcept { return static_cast<double>(m_selection.bytes()); }
  // The notices beside the rows.
  [[nodiscard]] QStringList notices() const;
  // The lesson of the last renaming; empty where it taught nothing.
  [[nodiscard]] QString learned() const;

  Q_INVOKABLE void chooseFolder(const QString& pathOrUrl);
  Q_INVOKABLE void chooseDestination(const QString& pathOrUrl);
  Q_INVOKABLE void analyze();
  Q_INVOKABLE void toggle(int row);
  Q_INVOKABLE void toggleExpanded(int row);
  Q_INVOKABLE void selectAll(bool isSelected);
  // Gives the group of a header another name, which is remembered for the kinds of files that move under it.
  Q_INVOKABLE void renameGroup(int row, const QString& name);
  Q_INVOKABLE void forgetLearned();
  Q_INVOKABLE void apply();
  // Puts an item on the keep list: it stays where it is.
  Q_INVOKABLE void keep(int row);
  [[nodiscard]] QString placeAt(int row) const override;
  Q_INVOKABLE void cancel() override;

  void reloadFolders();
  void languageChanged() override;

 Q_SIGNALS:
  void setupChanged();
  void searchChanged();
  void selectionChanged();
  void learnedChanged();

 protected:
  [[nodiscard]] QString movedText(std::int64_t count, std::int64_t bytes) const override;

 private:
  // A group as it is shown, with what is chosen and what could be.
  struct Shown {
    GroupRows rows;
    RowSum chosen = {};
    std::int64_t selectable = 0;
    bool isExpanded = true;
    int start = 0;  // its row
  };
  struct Line {
    std::optional<std::size_t> group;
    std::optional<std::size_t> row;  // of the proposal
  };

  [[nodiscard]] Line lineAt(int row) const;
  [[nodiscard]] FileUrl destinationRoot() const;
  [[nodiscard]] QVariant groupData(std::size_t group, int role) const;
  [[nodiscard]] QVariant rowData(std::size_t index, int role) const;
  [[nodiscard]] QString reasonOf(const ProposedRow& row) const;
  [[nodiscard]] int checkStateOf(const Shown& shown) const;
  void setProposal(Proposal proposal);
  void recount();
  void layOut();
  void invalidate();
  void learn(const Proposal& proposal, const RunReport& report);
  // The rows of a group, its header included, are new.
  void groupChanged(const Shown& shown, const QList<int>& roles = {});

  std::vector<FileUrl> m_managedFolders;
  std::optional<FileUrl> m_folder;
  std::optional<FileUrl> m_destination;
  std::vector<FileUrl> m_subfolders;
  OrganizationStrategy m_strategy = OrganizationStrategy::byCategory;
  bool m_includeSubfolders = false;
  bool m_useTopics = false;
  bool m_hasTopicModel = false;
  bool m_isSearching = false;
  bool m_hasAnalyzed = false;
  std::stop_source m_searchStop;
  bool m_isNamingTopics = false;
  int m_generation = 0;  // goes up with each proposal: rows are those of one
  Proposal m_proposal;
  Selection m_selection;
  std::vector<Shown> m_groups;
  int m_rows = 0;
  std::vector<std::size_t> m_renamed;  // groups of the proposal
  QString m_learnedKinds;
  std::string m_learnedName;
  BackgroundQueue m_searchQueue;
};

}  // namespace orvane
