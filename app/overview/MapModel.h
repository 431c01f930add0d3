#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/overview/MapAreas.h"
#include "app/shell/WindowServices.h"
#include "core/tasks/MapTask.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace orvane {

class AppState;
class CleanupModel;
class DuplicatesModel;
class OrganizeModel;

// The map of a folder: where in it the user is, what a filter leaves of it, and what grew.
class MapModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool isMapping READ isMapping NOTIFY workChanged)
  Q_PROPERTY(bool hasMap READ hasMap NOTIFY mapChanged)
  // The file that the map came from; empty for one of this machine. Such a map is only shown.
  Q_PROPERTY(QString fileName READ fileName NOTIFY mapChanged)
  Q_PROPERTY(double filesSoFar READ filesSoFar NOTIFY progressChanged)
  Q_PROPERTY(QString placeSoFar READ placeSoFar NOTIFY progressChanged)
  // Why the last map came to nothing; empty when it did not.
  Q_PROPERTY(QString problem READ problem NOTIFY workChanged)
  // {name, folder} from the top to the folder that is shown.
  Q_PROPERTY(QVariantList trail READ trail NOTIFY viewChanged)
  // {label, titleKey, folder, canEnter, canAct, bytes, count, colorIndex, stateKey, grown, hasGrown, children}, largest
  // first.
  Q_PROPERTY(QVariantList areas READ areas NOTIFY viewChanged)
  Q_PROPERTY(double shownBytes READ shownBytes NOTIFY viewChanged)
  Q_PROPERTY(double shownFiles READ shownFiles NOTIFY viewChanged)
  Q_PROPERTY(double unreadable READ unreadable NOTIFY mapChanged)
  Q_PROPERTY(QStringList kindKeys READ kindKeys CONSTANT)
  Q_PROPERTY(QStringList ageKeys READ ageKeys CONSTANT)
  Q_PROPERTY(QStringList categoryKeys READ categoryKeys CONSTANT)
  // Places in these lists; 0 for all.
  Q_PROPERTY(int kind READ kind WRITE setKind NOTIFY viewChanged)
  Q_PROPERTY(int age READ age WRITE setAge NOTIFY viewChanged)
  Q_PROPERTY(int category READ category WRITE setCategory NOTIFY viewChanged)
  // 0 bytes on the disk, 1 lengths of files.
  Q_PROPERTY(int measure READ measure WRITE setMeasure NOTIFY viewChanged)
  Q_PROPERTY(bool hasGrowth READ hasGrowth NOTIFY mapChanged)
  Q_PROPERTY(double grownBytes READ grownBytes NOTIFY mapChanged)
  Q_PROPERTY(double grownSince READ grownSince NOTIFY mapChanged)
  // {name, path, bytes} of the folders that explain the growth, {nameKey, bytes} of the kinds.
  Q_PROPERTY(QVariantList grownFolders READ grownFolders NOTIFY mapChanged)
  Q_PROPERTY(QVariantList grownKinds READ grownKinds NOTIFY mapChanged)
  // {name, folder, bytes} of the places that hold most of what a cleanup proposes.
  Q_PROPERTY(QVariantList freeingMost READ freeingMost NOTIFY mapChanged)
  // {date, bytes}, oldest first.
  Q_PROPERTY(QVariantList line READ line NOTIFY mapChanged)
  // 0 where the disk does not fill within two weeks.
  Q_PROPERTY(int daysUntilFull READ daysUntilFullShown NOTIFY mapChanged)
  Q_PROPERTY(bool remembers READ remembers NOTIFY choiceChanged)
  Q_PROPERTY(bool wasAsked READ wasAsked NOTIFY choiceChanged)

 public:
  struct Collaborators {  // all must outlive the model
    AppState& state;
    CleanupModel& cleanup;
    DuplicatesModel& duplicates;
    OrganizeModel& organize;
    const MapServices& maps;
  };
  MapModel(WindowServices services, Collaborators collaborators, QObject* parent = nullptr);
  ~MapModel() override;

  [[nodiscard]] bool isMapping() const noexcept { return m_isMapping; }
  [[nodiscard]] bool hasMap() const noexcept { return m_map != nullptr; }
  [[nodiscard]] const QString& fileName() const noexcept { return m_fileName; }
  [[nodiscard]] double filesSoFar() const noexcept { return m_filesSoFar; }
  [[nodiscard]] const QString& placeSoFar() const noexcept { return m_placeSoFar; }
  [[nodiscard]] const QString& problem() const noexcept { return m_problem; }
  [[nodiscard]] QVariantList trail() const;
  [[nodiscard]] const QVariantList& areas() const noexcept { return m_areas; }
  [[nodiscard]] double shownBytes() const;
  [[nodiscard]] double shownFiles() const;
  [[nodiscard]] double unreadable() const;
  [[nodiscard]] static QStringList kindKeys();
  [[nodiscard]] static QStringList ageKeys();
  [[nodiscard]] static QStringList categoryKeys();
  [[nodiscard]] int kind() const noexcept;
  [[nodiscard]] int age() const noexcept;
  [[nodiscard]] int category() const noexcept;
  [[nodiscard]] int measure() const noexcept { return static_cast<int>(m_measure); }
  void setKind(int kind);
  void setAge(int age);
  void setCategory(int category);
  void setMeasure(int measure);
  [[nodiscard]] bool hasGrowth() const { return m_map && m_map->growth.has_value(); }
  [[nodiscard]] double grownBytes() const;
  [[nodiscard]] double grownSince() const;
  [[nodiscard]] QVariantList grownFolders() const;
  [[nodiscard]] QVariantList grownKinds() const;
  [[nodiscard]] QVariantList freeingMost() const;
  [[nodiscard]] QVariantList line() const;
  [[nodiscard]] int daysUntilFullShown() const;
  [[nodiscard]] bool remembers() const noexcept { return m_choice.value_or(false); }
  [[nodiscard]] bool wasAsked() const noexcept { return m_choice.has_value(); }

  // A path or URL; the folder of the last map, or the home folder, where it is empty.
  Q_INVOKABLE void start(const QString& pathOrUrl = {});
  // Shows the map in a file of ncdu's form, of another machine perhaps.
  Q_INVOKABLE void openFile(const QString& pathOrUrl);
  Q_INVOKABLE void cancel();
  // Folders go by the numbers that `areas` and `trail` have for them.
  Q_INVOKABLE void enter(int folder);
  Q_INVOKABLE void goUp();
  Q_INVOKABLE void openFolder(int folder);
  Q_INVOKABLE void organizeFolder(int folder);
  Q_INVOKABLE void findDuplicates(int folder);
  // The rows of a folder; scans where that was not done yet.
  Q_INVOKABLE void showInCleanup(int folder);
  Q_INVOKABLE void setRemembers(bool remembers);
  Q_INVOKABLE void forget();

  // The preferences may be new.
  void reloadChoice();

 Q_SIGNALS:
  void workChanged();
  void progressChanged();
  void mapChanged();
  void viewChanged();
  void choiceChanged();

 private:
  using Work = std::function<std::optional<FolderMap>(const TaskMonitor& monitor)>;
  // `place` is named where it fails.
  void begin(const FileUrl& place, const QString& fileName, Work work);
  void finish(std::shared_ptr<const FolderMap> map, const QString& fileName, const QString& problem);
  void changeFilter(const MapFilter& filter);
  void show(StorageMap::Index folder);
  [[nodiscard]] QString shownTop() const;
  [[nodiscard]] QVariantMap named(StorageMap::Index folder, std::int64_t bytes) const;
  [[nodiscard]] std::optional<FileUrl> urlOf(int folder) const;
  void changeStored(std::function<void(SnapshotStore&)> change);

  WindowServices m_services;
  Collaborators m_collaborators;
  bool m_isMapping = false;
  double m_filesSoFar = 0;
  QString m_placeSoFar;
  QString m_problem;
  QString m_fileName;
  std::shared_ptr<const FolderMap> m_map;
  StorageMap::Index m_folder = StorageMap::top;
  MapFilter m_filter;
  MapMeasure m_measure = MapMeasure::disk;
  std::vector<MapSum> m_totals;
  QVariantList m_areas;
  std::optional<bool> m_choice = true;  // until it is read
  std::stop_source m_stop;
  BackgroundQueue m_choiceQueue;
  BackgroundQueue m_queue;
};

}  // namespace orvane
