#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Consent.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/text/PlanText.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/PlanTask.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <variant>

namespace orvane::cli {
namespace {

constexpr ArgumentSpec planArgument{
    .name = "FILE",
    .help = "A plan document in JSON; - for standard input.",
    .min = 1,
    .max = 1,
    .kind = ValueKind::path,
};
constexpr std::array planRunOptions{
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

// The document's text. Throws JsonError when it is longer than any plan, else std::runtime_error.
std::string documentFrom(const std::string& argument) {
  try {
    if (argument == "-") return readAll(STDIN_FILENO, CleaningPlan::maxDocumentBytes);
    return readFile(placeFromArgument(argument).path(), CleaningPlan::maxDocumentBytes);
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::file_too_large) {
      throw JsonError(fmt::format("it is longer than {}", formatByteCount(CleaningPlan::maxDocumentBytes)));
    }
    throw std::runtime_error(fmt::format("{}: {}", argument, error.code().message()));
  }
}

// Throws std::runtime_error for a document that cannot be read.
std::variant<CleaningPlan, PlanRefused> planFrom(const Arguments& arguments) {
  try {
    return planFromDocument(documentFrom(arguments.plain().front()));
  } catch (const JsonError& error) {
    return PlanRefused{.fault = error.what()};
  }
}

// Whether the plan may be used, and why not; `refused` is null where it may.
void printVerdict(Session& session, const PlanRefused* refused) {
  Json json = Json::object();
  json["valid"] = refused == nullptr;
  json["error"] = refused == nullptr ? Json() : Json(refused->fault);
  session.out().line(jsonText(json));
}

// Absent when it cannot be used, which is then said.
std::optional<CleaningPlan> usablePlan(Session& session, const Arguments& arguments) {
  auto plan = planFrom(arguments);
  if (const auto* refused = std::get_if<PlanRefused>(&plan)) {
    tellNotices({*refused});
    if (session.isJson()) printVerdict(session, refused);
    return std::nullopt;
  }
  return std::get<CleaningPlan>(std::move(plan));
}

ExitStatus runValidate(Session& session, const Arguments& arguments) {
  const auto plan = planFrom(arguments);
  const auto* refused = std::get_if<PlanRefused>(&plan);
  if (session.isJson()) {
    printVerdict(session, refused);
  } else if (refused == nullptr) {
    session.out().line("The plan is valid.");
  } else {
    session.out().line(fmt::format("The plan is not valid: {}", escapedForDisplay(refused->fault)));
  }
  return refused == nullptr ? ExitStatus::done : ExitStatus::failed;
}

std::optional<Proposal> proposed(Session& session, const CleaningPlan& plan, PlanReach reach) {
  ProgressLine line(session);
  return proposePlan(TaskServices::shared(), plan, reach, ReferenceClock::now(), scanMonitor(session, line));
}

ExitStatus runPlanPreview(Session& session, const Arguments& arguments) {
  const auto plan = usablePlan(session, arguments);
  if (!plan) return ExitStatus::failed;
  const auto proposal = proposed(session, *plan, PlanReach::everyFolder);
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  if (session.isJson()) {
    session.out().line(jsonText(planMatchesJson(*plan, *proposal)));
  } else {
    printPlan(session, *plan);
    printRows(session, *proposal);
  }
  return statusWith(proposal->notices(), ExitStatus::done);
}

ExitStatus runPlanRun(Session& session, const Arguments& arguments) {
  const bool isToSave = arguments.has("--save");
  if (!isToSave) requireConsentPossible(arguments);
  const auto plan = usablePlan(session, arguments);
  if (!plan) return ExitStatus::failed;
  const auto proposal = proposed(session, *plan, PlanReach::boundary);
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  if (isToSave) return statusWith(proposal->notices(), saveProposal(session, arguments, proposal->approve()));
  if (!session.isJson()) {
    printPlan(session, *plan);
    printRows(session, *proposal);
  }
  const auto run = askAndRun(session, arguments, *proposal);
  if (session.isJson()) session.out().line(jsonText(run.report.value_or(RunReport()).summary().toJson()));
  return statusWith(proposal->notices(), run.status);
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
    .run = runPlanPreview,
};

constexpr CommandSpec planRunCommand{
    .name = "plan run",
    .summary = "Carry out a plan",
    .details =
        "Scans the plan's folders, shows what matches, asks, and moves what is selected as one run that 'orvanectl "
        "restore' brings back. Files labelled for review are not selected. Nothing outside the granted folders is "
        "touched, whatever the plan says.",
    .arguments = planArgument,
    .options = planRunOptions,
    .run = runPlanRun,
};

}  // namespace orvane::cli
