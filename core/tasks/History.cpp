#include "core/tasks/History.h"

#include "core/safety/UndoJournal.h"
#include "core/tasks/TaskServices.h"

namespace orvane {

std::vector<std::string> takeJournalNotices(const TaskServices& services) {
  return services.journal().takeNotices();
}

}  // namespace orvane
