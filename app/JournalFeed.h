#pragma once

#include "app/BackgroundQueue.h"
#include "app/FileWatch.h"
#include "app/WindowServices.h"
#include "core/base/FileStatus.h"
#include "core/safety/JournalEntry.h"

#include <QObject>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A run as the screens show it.
struct JournalRun {
  CleanupRunSummary summary;
  std::string_view kindKey;    // of the text that names what the run was
  std::string_view stateKey;   // of the text that says where its items are
  std::int64_t remaining = 0;  // items that have not been brought back
};

struct JournalContents {
  std::vector<JournalRun> runs;  // newest first
  std::int64_t lifetimeReclaimedBytes = 0;
};

// What a run was, by what became of its items: the journal does not say who asked for it.
[[nodiscard]] std::string_view runKindKey(const std::vector<JournalEntry>& entries);

// The undo journal for the screens: read in the background at the start and whenever its file changes, by whichever
// process.
class JournalFeed : public QObject {
  Q_OBJECT

 public:
  explicit JournalFeed(WindowServices services, QObject* parent = nullptr);

  // Empty until the first loaded().
  [[nodiscard]] const JournalContents& contents() const noexcept { return *m_contents; }
  void reload();

 Q_SIGNALS:
  void loaded();
  // The journal was found damaged, or a run that died was settled: lines for people.
  void noticed(const std::vector<std::string>& lines);

 private:
  void load();

  WindowServices m_services;
  std::shared_ptr<const JournalContents> m_contents = std::make_shared<JournalContents>();
  FileWatch m_watch;
  BackgroundQueue m_queue;
};

}  // namespace orvane
