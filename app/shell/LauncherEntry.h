#pragma once

#include <QObject>
#include <QVariantMap>

#include <optional>
#include <vector>

namespace orvane {

class RunModel;

// The program's entry in docks and taskbars: how far a run is, and that one ended while the user was elsewhere. Follows
// the launcher entry protocol (com.canonical.Unity.LauncherEntry), which most of them read.
class LauncherEntry : public QObject {
  Q_OBJECT

 public:
  // The models must outlive the entry.
  explicit LauncherEntry(std::vector<RunModel*> models, QObject* parent = nullptr);

 private:
  void follow();
  void setUrgent(bool isUrgent);
  static void send(const QVariantMap& properties);

  std::vector<RunModel*> m_models;
  std::optional<int> m_percent;  // absent while nothing moves
  bool m_isUrgent = false;
};

}  // namespace orvane
