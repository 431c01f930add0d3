#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/safety/records/Boundary.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/TaskMonitor.h"
#include "core/uninstaller/records/AppUninstallBundle.h"
#include "core/uninstaller/records/InstalledApp.h"

#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

struct TaskServices;

// The applications in the folders, or in the usual ones where none is named, by name and without their sizes, which
// take the longest. Empty once a stop is requested.
[[nodiscard]] std::vector<InstalledApp> installedApps(const TaskServices& services,
                                                      const std::vector<FileUrl>& folders = {},
                                                      const std::stop_token& stop = {});
// Fills in the sizes. False once a stop is requested.
[[nodiscard]] bool measureApps(const TaskServices& services, std::span<InstalledApp> apps,
                               const std::stop_token& stop = {});
// The installed applications that a text means: those with that bundle identifier, else those of that name, ignoring
// case. Without their sizes.
[[nodiscard]] std::vector<InstalledApp> appsMeantBy(const TaskServices& services, const std::string& text);

// The application at a place, as it is now, with what it left behind. Throws UninstallError where there is none.
[[nodiscard]] AppUninstallBundle bundleAt(const TaskServices& services, const FileUrl& app);

enum class Leftovers : std::uint8_t { leave, take };

struct UninstallOptions {
  FileUrl app;
  Leftovers leftovers = Leftovers::leave;  // selected or not
  Date now = ReferenceClock::now();
};

// Proposes to move the application, which is the first row and alone in a group with its name; the entries in menus
// that start it; and what it left behind. These are in no group. Leftovers that stay are counted in a notice, and never
// go without their application. Throws UninstallError for an application of the system and for what is none.
[[nodiscard]] Proposal proposeUninstall(const TaskServices& services, const UninstallOptions& options);
// From the subject of a proposal. An application that is in none of the usual folders and outside the boundary is
// refused. Throws JsonError, UninstallError.
[[nodiscard]] std::optional<Proposal> reproposeUninstall(const TaskServices& services, const Json& subject,
                                                         const Boundary& boundary, Date countedTo,
                                                         const TaskMonitor& monitor = {});

}  // namespace orvane
