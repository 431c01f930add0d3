#pragma once

#include "app/common/RunModel.h"
#include "core/tasks/Proposal.h"
#include "core/uninstaller/records/InstalledApp.h"

#include <QtQml/qqmlregistration.h>
#include <QStringList>
#include <QVariantList>

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// The installed applications, and the one whose uninstall is under review with what it left behind.
class AppsModel : public orvane::RunModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY queryChanged)
  Q_PROPERTY(QStringList sortKeys READ sortKeys CONSTANT)
  Q_PROPERTY(int sort READ sort WRITE setSort NOTIFY queryChanged)
  Q_PROPERTY(bool isReversed READ isReversed NOTIFY queryChanged)
  Q_PROPERTY(int appCount READ appCount NOTIFY listChanged)
  Q_PROPERTY(bool isListing READ isListing NOTIFY listChanged)
  Q_PROPERTY(bool hasListed READ hasListed NOTIFY listChanged)
  Q_PROPERTY(bool isReviewing READ isReviewing NOTIFY reviewChanged)
  Q_PROPERTY(bool isFindingLeftovers READ isFindingLeftovers NOTIFY reviewChanged)
  Q_PROPERTY(QString reviewName READ reviewName NOTIFY reviewChanged)
  Q_PROPERTY(QString reviewIdentifier READ reviewIdentifier NOTIFY reviewChanged)
  Q_PROPERTY(QVariantList leftovers READ leftovers NOTIFY reviewChanged)
  Q_PROPERTY(double reviewBytes READ reviewBytes NOTIFY reviewChanged)
  Q_PROPERTY(double reviewCount READ reviewCount NOTIFY reviewChanged)

 public:
  enum Role {
    NameRole = Qt::UserRole + 1,
    IdentifierRole,
    VersionRole,
    PathRole,
    BytesRole,
    LastOpenedRole,
    IsProtectedRole,
    IconRole,
    KindKeyRole,
    IsOrphanRole,
    CommandRole,
  };
  enum Sort { Name, Size, LastUse };
  Q_ENUM(Sort)

  explicit AppsModel(WindowServices services, QObject* parent = nullptr);
  ~AppsModel() override;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] QString searchText() const;
  // In the name or the identifier, ignoring case.
  void setSearchText(const QString& text);
  // By name, the largest first, or the one that was not used for longest first.
  // Keys of texts, as Sort counts.
  [[nodiscard]] static QStringList sortKeys() {
    return {QStringLiteral("sort.name"), QStringLiteral("sort.size"), QStringLiteral("sort.last_used")};
  }
  [[nodiscard]] int sort() const noexcept { return m_sort; }
  void setSort(int sort);
  [[nodiscard]] bool isReversed() const noexcept { return m_isReversed; }
  // As the head of a column does: by it, or the other way round where the list is sorted by it.
  Q_INVOKABLE void sortBy(int sort);
  // Of all, shown or not.
  [[nodiscard]] int appCount() const noexcept { return static_cast<int>(m_apps.size()); }
  [[nodiscard]] bool isListing() const noexcept { return m_isListing; }
  [[nodiscard]] bool hasListed() const noexcept { return m_hasListed; }

  [[nodiscard]] bool isReviewing() const noexcept { return m_review.has_value(); }
  [[nodiscard]] bool isFindingLeftovers() const noexcept { return m_isFindingLeftovers; }
  [[nodiscard]] QString reviewName() const;
  [[nodiscard]] QString reviewIdentifier() const;
  // {name, place, bytes, selected, path}
  [[nodiscard]] QVariantList leftovers() const;
  // Of the application and the selected leftovers.
  [[nodiscard]] double reviewBytes() const;
  [[nodiscard]] double reviewCount() const;

  Q_INVOKABLE void list();
  // Does nothing for a protected application.
  Q_INVOKABLE void review(int row);
  // Puts the command that removes a protected application on the clipboard.
  Q_INVOKABLE void copyCommand(int row);
  Q_INVOKABLE void closeReview();
  Q_INVOKABLE void toggleLeftover(int index);
  Q_INVOKABLE void selectAllLeftovers(bool isSelected);
  Q_INVOKABLE void uninstall();
  [[nodiscard]] QString placeAt(int row) const override;
  Q_INVOKABLE void cancel() override;

 Q_SIGNALS:
  void queryChanged();
  void listChanged();
  void reviewChanged();

 protected:
  [[nodiscard]] QString movedText(std::int64_t count, std::int64_t bytes) const override;

 private:
  void propose(const Proposal& proposal);
  void showFound(std::vector<InstalledApp> apps);
  void arrange();

  std::vector<InstalledApp> m_apps;
  std::vector<std::size_t> m_shown;  // indexes into m_apps
  std::string m_searchText;
  int m_sort = Name;
  bool m_isReversed = false;
  bool m_isListing = false;
  bool m_hasListed = false;
  bool m_areMeasured = true;
  std::stop_source m_listStop;
  std::optional<InstalledApp> m_review;
  bool m_isFindingLeftovers = false;
  // Of the application under review, which is its first row.
  Proposal m_proposal;
  Selection m_selection;
  std::string m_uninstalledName;
  BackgroundQueue m_listQueue;
};

}  // namespace orvane
