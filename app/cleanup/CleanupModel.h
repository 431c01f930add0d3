#pragma once

#include "app/cleanup/CleanupArranger.h"
#include "app/cleanup/CleanupSections.h"
#include "app/common/BackgroundQueue.h"
#include "app/common/RunModel.h"
#include "app/shell/WindowServices.h"
#include "core/base/values/Date.h"
#include "core/tasks/Selection.h"

#include <QtQml/qqmlregistration.h>
#include <QStringList>
#include <QTimer>
#include <QVariantList>

#include <cstdint>
#include <vector>

namespace orvane {

class AppState;

// The scanned items by category, headers and items as rows of one list, with what is selected, and the cleanup of it.
// Filtering and sorting are done in the background; what is shown changes once they are through.
// The tool that describes types to QML looks for the base by the name that stands here.
class CleanupModel : public orvane::RunModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY queryChanged)
  Q_PROPERTY(Sort sort READ sort WRITE setSort NOTIFY queryChanged)
  Q_PROPERTY(bool isReversed READ isReversed NOTIFY queryChanged)
  Q_PROPERTY(int riskFilter READ riskFilter WRITE setRiskFilter NOTIFY queryChanged)
  Q_PROPERTY(QString categoryFilter READ categoryFilter WRITE setCategoryFilter NOTIFY queryChanged)
  Q_PROPERTY(QString folderFilter READ folderFilter WRITE setFolderFilter NOTIFY queryChanged)
  Q_PROPERTY(QStringList sortKeys READ sortKeys CONSTANT)
  Q_PROPERTY(QStringList riskKeys READ riskKeys CONSTANT)
  Q_PROPERTY(double itemCount READ itemCount NOTIFY countsChanged)
  Q_PROPERTY(double shownCount READ shownCount NOTIFY countsChanged)
  Q_PROPERTY(double selectedCount READ selectedCount NOTIFY selectionChanged)
  Q_PROPERTY(double selectedBytes READ selectedBytes NOTIFY selectionChanged)
  Q_PROPERTY(double shownSelectedCount READ shownSelectedCount NOTIFY selectionChanged)
  Q_PROPERTY(double shownSelectedBytes READ shownSelectedBytes NOTIFY selectionChanged)
  Q_PROPERTY(QVariantList filters READ filters NOTIFY queryChanged)
  Q_PROPERTY(double currentFreeBytes READ currentFreeBytes NOTIFY freeBytesChanged)
  Q_PROPERTY(double projectedFreeBytes READ projectedFreeBytes NOTIFY freeBytesChanged)
  Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY workChanged)
  Q_PROPERTY(bool isUndoing READ isUndoing NOTIFY workChanged)

 public:
  enum Role {
    KindRole = Qt::UserRole + 1,
    NameRole,
    PlaceRole,
    ReasonRole,
    RiskRole,
    DateRole,
    BytesRole,
    CheckStateRole,
    ColorIndexRole,
    CountRole,
    ExpandedRole,
    CloudWarningRole,
    IsFolderRole,
    CategoryRole,
    LockReasonRole,
  };
  enum Kind { Header, Item };
  Q_ENUM(Kind)
  enum Sort { Size, Date, Name, LastUse };
  Q_ENUM(Sort)
  // In the order of CleanupFilter.
  enum Filter { SearchFilter, RiskFilter, CategoryFilter, FolderFilter, InsideFilter };
  Q_ENUM(Filter)

  CleanupModel(WindowServices services, AppState& state, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] QString searchText() const;
  void setSearchText(const QString& text);
  // Keys of texts, as Sort counts.
  [[nodiscard]] static QStringList sortKeys() {
    return {QStringLiteral("sort.size"), QStringLiteral("sort.date"), QStringLiteral("sort.name"),
            QStringLiteral("sort.last_used")};
  }
  [[nodiscard]] Sort sort() const noexcept;
  void setSort(Sort sort);
  // The order the other way round.
  [[nodiscard]] bool isReversed() const noexcept { return m_query.isReversed; }
  void setReversed(bool isReversed);
  // As the head of a column does: by it, or the other way round where the list is sorted by it.
  Q_INVOKABLE void sortBy(int sort);
  // Keys of texts: for every risk, then one by one.
  [[nodiscard]] static QStringList riskKeys() {
    return {QStringLiteral("cleanup.all_risks"), QStringLiteral("risk.safe"), QStringLiteral("risk.review"),
            QStringLiteral("risk.manual")};
  }
  // -1 for every risk.
  [[nodiscard]] int riskFilter() const noexcept;
  void setRiskFilter(int risk);
  // A category's raw value; empty for all.
  [[nodiscard]] QString categoryFilter() const;
  void setCategoryFilter(const QString& category);
  [[nodiscard]] QString folderFilter() const;
  void setFolderFilter(const QString& folder);
  // The filters that narrow the list: {filter, text} each.
  [[nodiscard]] QVariantList filters() const;
  Q_INVOKABLE void removeFilter(Filter filter);
  Q_INVOKABLE void clearFilters();
  // Shows what one area of the overview holds.
  void showOnly(const QString& category, const QString& folder);
  // Shows what lies in a folder, and the item that the folder is part of.
  void showInside(const FileUrl& folder);

  [[nodiscard]] double itemCount() const;
  [[nodiscard]] double shownCount() const noexcept { return static_cast<double>(m_sections.shownCount()); }
  [[nodiscard]] double selectedCount() const noexcept { return static_cast<double>(m_selection.count()); }
  [[nodiscard]] double selectedBytes() const noexcept { return static_cast<double>(m_selection.bytes()); }
  // Of what the search and the filters leave in the list, folded groups with it.
  [[nodiscard]] double shownSelectedCount() const noexcept { return static_cast<double>(m_sections.selected().count); }
  [[nodiscard]] double shownSelectedBytes() const noexcept { return static_cast<double>(m_sections.selected().bytes); }
  [[nodiscard]] double currentFreeBytes() const;
  // Once the Trash is emptied.
  [[nodiscard]] double projectedFreeBytes() const;
  [[nodiscard]] bool isCleaning() const noexcept { return isMoving(); }
  [[nodiscard]] bool isUndoing() const noexcept { return isRestoring(); }

  // Of an item, its selection; of a header, that of everything shown below it.
  Q_INVOKABLE void toggle(int row);
  Q_INVOKABLE void toggleExpanded(int row);
  // Selects every item from one row to the other that can be.
  Q_INVOKABLE void selectRange(int from, int to);
  // Everything that is shown and can be.
  Q_INVOKABLE void selectAll();
  Q_INVOKABLE void selectRecommended();
  Q_INVOKABLE void deselectAll();
  Q_INVOKABLE void cleanSelected();
  // Of what is selected, only what the list shows.
  Q_INVOKABLE void cleanShown();
  Q_INVOKABLE void openContainingFolder(int row);
  // Puts an item on the keep list, and takes it out.
  Q_INVOKABLE void keep(int row);
  [[nodiscard]] QString placeAt(int row) const override;
  // Why an item has its label, in sentences.
  [[nodiscard]] Q_INVOKABLE QString explanation(int row) const;

  void languageChanged() override;

  // The journal changed: other sections and programs may have moved what is listed.
  void followJournal();

 Q_SIGNALS:
  void queryChanged();
  void countsChanged();
  void selectionChanged();
  void freeBytesChanged();

 private:
  using Section = CleanupSections::Section;

  [[nodiscard]] QVariant sectionData(ScanCategory category, int role) const;
  [[nodiscard]] QVariant itemData(std::uint32_t index, int role) const;
  [[nodiscard]] int checkStateOf(const Section& section) const;
  void clean(const Selection& selection);
  void takeItems(std::size_t first);
  void tellCounts();
  void show(CleanupArrangement arrangement);
  void changeQuery(const CleanupQuery& query);
  void refreshChecks();
  void takeOut(const RunReport& report, int generation);
  void takeBack(const std::vector<std::uint32_t>& back, int generation);

  AppState& m_state;
  ScannedItems& m_items;
  Selection m_selection;
  CleanupQuery m_query;
  CleanupSections m_sections;
  int m_rows = 0;
  orvane::Date m_scanStart;
  int m_generation = 0;  // goes up with each scan: indexes are those of one scan

  QTimer m_countTimer;
  CleanupArranger m_arranger;

  BackgroundQueue m_journalQueue;
};

}  // namespace orvane
