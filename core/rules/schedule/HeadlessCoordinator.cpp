#include "core/rules/schedule/HeadlessCoordinator.h"

#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/organizer/tidy/AutoOrganizer.h"
#include "core/platform/NotificationCenter.h"
#include "core/platform/Volume.h"
#include "core/rules/schedule/ScheduleCoordinator.h"

#include <fmt/format.h>

#include <exception>
#include <utility>
#include <variant>

namespace orvane {
namespace {

// The clock may be set and the machine may sleep meanwhile, so it is looked at again and again.
constexpr std::chrono::seconds lookInterval{10};

}  // namespace

HeadlessCoordinator::HeadlessCoordinator(Collaborators collaborators) : m_collaborators(std::move(collaborators)) {}

bool HeadlessCoordinator::isDue(std::chrono::seconds ahead) const {
  const auto capacity = m_collaborators.volume.capacity(m_collaborators.home);
  return m_collaborators.schedule.isTimerStartDue(capacity ? std::optional(capacity->availableBytes) : std::nullopt,
                                                  ahead);
}

void HeadlessCoordinator::cleanIfDue() {
  while (!isDue({})) {
    if (!isDue(patience)) return;
    m_collaborators.wait(lookInterval);
  }
  m_collaborators.schedule.carryOutScheduledRun({.approve = [&](const Approval& approval) {
    for (const auto& notice : approval.proposal().notices()) {
      const auto* refused = std::get_if<RuleRefused>(&notice);
      if (refused != nullptr)
        m_collaborators.console(fmt::format("Rule '{}' is left out: {}", refused->rule, refused->reason));
    }
    return true;
  }});
}

void HeadlessCoordinator::tidyIfEnabled() {
  const auto settings = m_collaborators.tidySettings.get();
  if (!settings.isEnabled) return;
  const AutoOrganizeRequest request{.options = TidyOptions::of(settings)};
  const auto report = m_collaborators.autoOrganizer.run(request);
  if (report.end != AutoOrganizeReport::End::completed) return;
  m_collaborators.tidySettings.noteRun(request.now, report.result.totalMoved());
}

bool HeadlessCoordinator::carryOut() noexcept {
  bool allDone = true;
  const auto attempt = [&](std::string_view what, auto&& work) noexcept {
    try {
      work();
    } catch (const std::exception& error) {
      m_collaborators.console(fmt::format("{} failed: {}", what, error.what()));
      allDone = false;
    }
  };
  attempt("Scheduled cleanup", [&] { cleanIfDue(); });
  attempt("Tidying up", [&] { tidyIfEnabled(); });
  // The last, as it lowers this process's priority for good.
  attempt("Mapping the home folder", m_collaborators.mapIfDue);
  m_collaborators.notificationCenter.awaitAnswers(answerTime);
  return allDone;
}

}  // namespace orvane
