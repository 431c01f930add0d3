#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/FileWatch.h"
#include "app/shell/WindowServices.h"
#include "core/tasks/History.h"

#include <QObject>
#include <QString>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Of the text that names what a run was, and of the text that says where its items are.
[[nodiscard]] std::string_view kindKey(const RecordedRun& run);
[[nodiscard]] std::string_view stateKey(const RecordedRun& run);
// On whose behalf it was; empty where that is not known.
[[nodiscard]] QString originText(const RecordedRun& run);

// The undo journal for the screens: read in the background at the start and whenever its file changes, by whichever
// process.
class JournalFeed : public QObject {
  Q_OBJECT

 public:
  explicit JournalFeed(WindowServices services, QObject* parent = nullptr);

  // Empty until the first loaded().
  [[nodiscard]] const History& contents() const noexcept { return *m_contents; }
  void reload();

 Q_SIGNALS:
  void loaded();
  // The journal was found damaged, or a run that died was settled: lines for people.
  void noticed(const std::vector<std::string>& lines);

 private:
  void load();

  WindowServices m_services;
  std::shared_ptr<const History> m_contents = std::make_shared<History>();
  FileWatch m_watch;
  BackgroundQueue m_queue;
};

}  // namespace orvane
