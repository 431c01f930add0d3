#include "cli/Arguments.h"
#include "cli/Consent.h"
#include "cli/FileArguments.h"
#include "cli/PlanRun.h"
#include "cli/PlanScan.h"
#include "cli/PlanText.h"
#include "cli/Session.h"
#include "cli/commands/Commands.h"
#include "core/base/ByteCount.h"
#include "core/base/FileDescriptor.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/plans/CleaningPlanSchema.h"

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

namespace orvane::cli {
namespace {

constexpr ArgumentSpec planArgument{
    .name = "FILE",
    .help = "A plan document in JSON; - for standard input.",
    .least = 1,
    .most = 1,
    .kind = ValueKind::path,
};
constexpr std::array runOptions{
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

// The document's text. Throws JsonError when it is longer than any plan, else std::runtime_error.
std::string documentFrom(const std::string& argument) {
  try {
    if (argument == "-") return readAll(STDIN_FILENO, CleaningPlan::maximumDocumentBytes);
    return readFile(placeFromArgument(argument).path(), CleaningPlan::maximumDocumentBytes);
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::file_too_large) {
      throw JsonError(fmt::format("it is longer than {}", formatByteCount(CleaningPlan::maximumDocumentBytes)));
    }
    throw std::runtime_error(fmt::format("{}: {}", argument, error.code().message()));
  }
}

struct CheckedPlan {
  std::optional<CleaningPlan> plan;  // absent when it is none, or not acceptable
  std::string error;
};

CheckedPlan checkedPlan(const Arguments& arguments) {
  try {
    auto plan = CleaningPlan::decode(documentFrom(arguments.plain().front()));
    if (const auto fault = CleaningPlanSchema::firstFault(plan)) return {{}, fault->what()};
    return {std::move(plan), {}};
  } catch (const JsonError& error) {
    return {{}, error.what()};
  }
}

// Absent when it cannot be used, which is then said.
std::optional<CleaningPlan> usablePlan(const Arguments& arguments) {
  auto checked = checkedPlan(arguments);
  if (!checked.plan) {
    Session::report(fmt::format("the plan cannot be used: {}", escapedForDisplay(checked.error)));
  }
  return std::move(checked.plan);
}

ExitStatus runValidate(Session& session, const Arguments& arguments) {
  const auto checked = checkedPlan(arguments);
  if (session.isJson()) {
    Json json = Json::object();
    json["valid"] = checked.plan.has_value();
    json["error"] = checked.plan ? Json() : Json(checked.error);
    session.out().line(jsonText(json));
  } else if (checked.plan) {
    session.out().line("The plan is valid.");
  } else {
    session.out().line(fmt::format("The plan is not valid: {}", escapedForDisplay(checked.error)));
  }
  return checked.plan ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus interrupted() {
  Session::report("interrupted; nothing was changed");
  return ExitStatus::interrupted;
}

ExitStatus runPreview(Session& session, const Arguments& arguments) {
  const auto plan = usablePlan(arguments);
  if (!plan) return ExitStatus::failed;
  const auto preview = previewPlan(session, *plan, PlanReach::everyFolder);
  if (preview.isInterrupted) return interrupted();
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& match : preview.matches) json.push_back(match.toJson());
    session.out().line(jsonText(json));
  } else {
    printPlan(session, *plan);
    printMatches(session, preview.matches);
  }
  return preview.someFoldersAreLeftOut ? ExitStatus::failed : ExitStatus::done;
}

ExitStatus runRun(Session& session, const Arguments& arguments) {
  requireConsentPossible(arguments);
  const auto plan = usablePlan(arguments);
  if (!plan) return ExitStatus::failed;
  auto preview = previewPlan(session, *plan, PlanReach::allowedRoots);
  if (preview.isInterrupted) return interrupted();
  if (!session.isJson()) {
    printPlan(session, *plan);
    printMatches(session, preview.matches);
  }
  const auto done = runPlan(session, arguments, preview.matches);
  if (session.isJson()) {
    const PlanExecutionSummary nothing{.batchId = Uuid::random()};
    session.out().line(jsonText(done.summary.value_or(nothing).toJson()));
  }
  return done.status == ExitStatus::done && preview.someFoldersAreLeftOut ? ExitStatus::failed : done.status;
}

}  // namespace

constexpr CommandSpec planValidateCommand{
    .name = "plan validate",
    .summary = "Say whether a plan document may be used",
    .details = "Reads a plan and checks it. The exit status is 0 when it is valid, else 1.",
    .arguments = planArgument,
    .options = {},
    .run = runValidate,
};

constexpr CommandSpec planPreviewCommand{
    .name = "plan preview",
    .summary = "Show what a plan would do, and change nothing",
    .details = "Scans the plan's folders and shows each file that matches, and why it is selected or not.",
    .arguments = planArgument,
    .options = {},
    .run = runPreview,
};

constexpr CommandSpec planRunCommand{
    .name = "plan run",
    .summary = "Carry out a plan",
    .details =
        "Scans the plan's folders, shows what matches, asks, and moves what is selected as one run that 'orvanectl "
        "restore' brings back. Files labelled for review are not selected. Nothing outside the granted folders is "
        "touched, whatever the plan says.",
    .arguments = planArgument,
    .options = runOptions,
    .run = runRun,
};

}  // namespace orvane::cli
