#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/JournalFeed.h"
#include "app/common/RunModel.h"
#include "app/history/HistoryFigures.h"
#include "app/history/HistoryRows.h"

#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>

namespace orvane {

// The runs of the undo journal, newest first, and the items of those that are unfolded, as rows of one list. Of the
// items of a run the user chooses those that come back together.
class HistoryModel : public orvane::RunModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
  // One of kindKeys(): the runs that are shown; the first stands for all.
  Q_PROPERTY(int kind READ kind WRITE setKind NOTIFY kindChanged)
  Q_PROPERTY(QStringList kindKeys READ kindKeys CONSTANT)
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
    // Of a run the rule, the request or the application, where there is one; else an item's name.
    NameRole,
    PlaceRole,
    // Of an item that was moved to another folder than the Trash.
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
    // Of an item: whether it is among those that come back together.
    ChosenRole,
    // Of an unfolded run and its foot: how many items it has, how many of them are chosen, how many can come back, and
    // of how many of these the places are taken.
    ItemCountRole,
    ChosenCountRole,
    RestorableCountRole,
    TakenCountRole,
  };
  enum Kind { Run, Entry, Foot };
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
  [[nodiscard]] int kind() const noexcept { return static_cast<int>(m_query.kind); }
  void setKind(int kind);
  [[nodiscard]] static QStringList kindKeys();
  [[nodiscard]] int runCount() const;
  [[nodiscard]] int shownCount() const noexcept { return static_cast<int>(m_rows->runs().size()); }
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
  // Takes an item out of those that come back together, or in again.
  Q_INVOKABLE void toggleChosen(int row);
  // Chooses the items between two rows that can come back.
  Q_INVOKABLE void chooseRange(int from, int to);
  // The chosen items of the run that the row belongs to, as restoreRun() does.
  Q_INVOKABLE void restoreChosen(int row);
  // Does nothing while another one is being restored.
  Q_INVOKABLE void restore(const QString& runId);
  // The answers to placesTaken(): what stands there goes to the Trash, or what comes back gets another name.
  Q_INVOKABLE void swapPlaces();
  Q_INVOKABLE void restoreBeside();
  Q_INVOKABLE void reload();
  Q_INVOKABLE void clearResult();
  // Where an item is now, or the first one that can come back of a foot's run: its place in the Trash or the folder
  // that it was moved to.
  Q_INVOKABLE void openContainingFolder(int row);
  [[nodiscard]] QString placeAt(int row) const override;

 Q_SIGNALS:
  void searchTextChanged();
  void kindChanged();
  void countsChanged();
  void placesTaken();

 private:
  // A restore that waits for an answer.
  struct Question {
    RestoreOptions options;
    Approval restore;
    Approval room;
  };
  [[nodiscard]] static QVariant runData(const HistoryRows::Run& run, int role);
  [[nodiscard]] QVariant itemData(const RecordedItem& item, int role) const;
  void choose(int row, bool isChosen);
  void askOrRestore(RestoreOptions options);
  void rebuild();
  void show(std::shared_ptr<HistoryRows> rows);

  JournalFeed& m_feed;
  HistoryFigures m_figures;
  HistoryRows::Query m_query;
  HistoryRows::LeftOut m_leftOut;
  std::shared_ptr<HistoryRows> m_rows = std::make_shared<HistoryRows>();
  bool m_isLoaded = false;
  std::stop_source m_rebuildStop;
  std::optional<Question> m_question;

  BackgroundQueue m_viewQueue;
};

}  // namespace orvane
