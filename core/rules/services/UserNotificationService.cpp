#include "core/rules/services/UserNotificationService.h"

#include "core/base/text/ByteCount.h"
#include "core/base/values/Uuid.h"
#include "core/platform/NotificationCenter.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

namespace orvane {

UserNotificationService::UserNotificationService(NotificationCenter& center,
                                                 std::function<void(std::string_view line)> console)
    : m_center(center), m_console(std::move(console)) {}

bool UserNotificationService::requestAuthorization() const {
  try {
    return m_center.requestAuthorization();
  } catch (const std::runtime_error&) {
    return false;
  }
}

void UserNotificationService::postCleanupSummary(std::int64_t filesCleaned, std::int64_t bytesReclaimed) const {
  if (filesCleaned < 1) return;
  try {
    m_center.post({
        .identifier = Uuid::random().toString(),
        .title = "Orvane Scheduled Cleanup Complete",
        .body = fmt::format("Reclaimed {} across {} files. Tap to view details or undo.",
                            formatByteCount(bytesReclaimed), filesCleaned),
    });
  } catch (const std::runtime_error& error) {
    m_console(fmt::format("Failed to dispatch notification: {}", error.what()));
  }
}

}  // namespace orvane
