#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/JournalFeed.h"
#include "app/common/RunModel.h"
#include "app/history/HistoryFigures.h"
#include "core/safety/records/JournalEntry.h"

#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// The runs of the undo journal, newest first, and the entries of those that are unfolded, as rows of one list.
class HistoryModel : public orvane::RunModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
  Q_PROPERTY(int runCount READ runCount NOTIFY countsChanged)
  Q_PROPERTY(int shownCount READ shownCount NOTIFY countsChanged)
  Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY countsChanged)
  Q_PROPERTY(bool isRestoring READ isRestoring NOTIFY workChanged)
  Q_PROPERTY(bool canCancel READ isRestoring NOTIFY workChanged)
  Q_PROPERTY(QStringList takenPlaces READ takenPlaces NOTIFY placesTaken)
  Q_PROPERTY(bool areFoldersTaken READ areFoldersTaken NOTIFY placesTaken)
  Q_PROPERTY(orvane::HistoryFigures* figures READ figures CONSTANT)

 public:
  enum Role {
    KindRole = Qt::UserRole + 1,
    IdRole,
    DateRole,
    TitleKeyRole,
    NameRole,
    PlaceRole,
    DestinationRole,
    CountRole,
    BytesRole,
    StateKeyRole,
    CanRestoreRole,
    ExpandedRole,
    OriginRole,
    // The symbol of the section that acted.
    ActorSymbolRole,
    // The day of the run by the user's time zone, as YYYY-MM-DD.
    DayRole,
    // Whether it is the last row of its run.
    IsLastRole,
  };
  enum Kind { Run, Entry };
  Q_ENUM(Kind)

  // `feed` must outlive the model.
  HistoryModel(WindowServices services, JournalFeed& feed, QObject* parent = nullptr);
  ~HistoryModel() override;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] QString searchText() const;
  // Shows only runs with entries whose path holds the text, and of those only these entries.
  void setSearchText(const QString& text);
  [[nodiscard]] int runCount() const;
  [[nodiscard]] int shownCount() const noexcept { return static_cast<int>(m_view->runs.size()); }
  [[nodiscard]] bool isLoaded() const noexcept { return m_isLoaded; }
  [[nodiscard]] HistoryFigures* figures() noexcept { return &m_figures; }

  // Items in the places of those that are to come back, a line each, since placesTaken() asked.
  [[nodiscard]] QStringList takenPlaces() const;
  // Whether one of them is a whole folder, whose name is what programs look for.
  [[nodiscard]] bool areFoldersTaken() const;

  void languageChanged() override;

  Q_INVOKABLE void toggleExpanded(int row);
  // Brings a run back. Where a place is taken placesTaken() asks first, and nothing moves before swapPlaces() or
  // restoreBeside().
  Q_INVOKABLE void restoreRun(int row);
  // One item of a run.
  Q_INVOKABLE void restoreEntry(int row);
  // Does nothing while another one is being restored.
  Q_INVOKABLE void restore(const QString& runId);
  // The answers to placesTaken(): what stands there goes to the Trash, or what comes back gets another name.
  Q_INVOKABLE void swapPlaces();
  Q_INVOKABLE void restoreBeside();
  Q_INVOKABLE void reload();
  Q_INVOKABLE void clearResult();
  // Where an item is now: its place in the Trash or the folder that it was moved to.
  Q_INVOKABLE void openContainingFolder(int row);
  [[nodiscard]] QString placeAt(int row) const override;

 Q_SIGNALS:
  void searchTextChanged();
  void countsChanged();
  void placesTaken();

 private:
  // A restore that waits for an answer.
  struct Question {
    RestoreWish wish;
    Approval restore;
    Approval room;
  };
  struct ShownRun {
    RecordedRun run;
    bool isExpanded = false;
    std::vector<RecordedItem> entries;  // when expanded
    int start = 0;                      // its row
  };
  struct View {
    std::vector<ShownRun> runs;
    int rows = 0;
  };
  struct Query {
    std::string searchText;
    std::set<Uuid> unfolded;
    std::set<Uuid> folded;  // of those that a search unfolds
  };
  struct Place {
    const ShownRun* run = nullptr;
    const RecordedItem* entry = nullptr;
  };

  [[nodiscard]] static View viewOf(const TaskServices& services, const History& contents, const Query& query,
                                   const std::stop_token& stop);
  [[nodiscard]] Place placeOf(int row) const;
  [[nodiscard]] static QVariant runData(const ShownRun& run, int role);
  [[nodiscard]] QVariant entryData(const RecordedItem& item, int role) const;
  void askOrRestore(RestoreWish wish);
  void rebuild();
  void show(std::shared_ptr<const View> view);

  JournalFeed& m_feed;
  HistoryFigures m_figures;
  Query m_query;
  std::shared_ptr<const View> m_view = std::make_shared<View>();
  bool m_isLoaded = false;
  std::stop_source m_rebuildStop;
  std::optional<Question> m_question;

  BackgroundQueue m_viewQueue;
};

}  // namespace orvane
