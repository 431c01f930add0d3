#include "cli/Arguments.h"
#include "cli/Consent.h"
#include "cli/PlanRun.h"
#include "cli/PlanScan.h"
#include "cli/PlanText.h"
#include "cli/Session.h"
#include "cli/commands/Commands.h"
#include "core/base/Json.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/OfflineHeuristicParser.h"

#include <array>
#include <optional>
#include <string>

namespace orvane::cli {
namespace {

constexpr std::string_view offlineProvider = "offline_heuristic";
constexpr std::array<std::string_view, 1> providers{offlineProvider};

constexpr std::array options{
    OptionSpec{.name = "--provider",
               .valueName = "PROVIDER",
               .help = "Who makes the plan; offline_heuristic looks for keywords and uses no network.",
               .kind = ValueKind::choice,
               .choices = providers},
    OptionSpec{.name = "--apply", .valueName = "", .help = "Carry out what is selected, after asking."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

struct Answered {
  CleaningPlan plan;
  std::optional<PlanValidationError> fault;
  PlanPreview preview;
};

Json jsonFrom(const Answered& answered) {
  Json json = Json::object();
  json["plan"] = answered.plan.toJson();
  auto& matches = json["matches"] = Json::array();
  for (const auto& match : answered.preview.matches) matches.push_back(match.toJson());
  json["validationError"] = answered.fault ? Json(answered.fault->what()) : Json();
  json["provider"] = offlineProvider;
  json["usedFallback"] = false;
  return json;
}

ExitStatus apply(Session& session, const Arguments& arguments, Answered& answered) {
  auto run = answered.fault ? PlanRun{.summary = {}, .status = ExitStatus::failed}
                            : runPlan(session, arguments, answered.preview.matches);
  if (session.isJson()) {
    auto json = jsonFrom(answered);
    json["summary"] = run.summary ? run.summary->toJson() : Json();
    session.out().line(jsonText(json));
  }
  return run.status;
}

ExitStatus run(Session& session, const Arguments& arguments) {
  const bool applies = arguments.has("--apply");
  if (applies) requireConsentPossible(arguments);
  Answered answered;
  answered.plan = OfflineHeuristicParser().parse(arguments.plain().front());
  answered.fault = CleaningPlanSchema::firstFault(answered.plan);
  if (!session.isJson()) {
    printPlan(session, answered.plan);
    session.out().flush();
  }
  if (answered.fault) {
    Session::report(std::string("the plan cannot be used: ") + answered.fault->what());
  } else {
    answered.preview = previewPlan(session, answered.plan, applies ? PlanReach::allowedRoots : PlanReach::everyFolder);
    if (answered.preview.isInterrupted) {
      Session::report("interrupted; nothing was changed");
      return ExitStatus::interrupted;
    }
    if (!session.isJson()) printMatches(session, answered.preview.matches);
  }
  auto status = ExitStatus::done;
  if (applies) {
    status = apply(session, arguments, answered);
  } else if (session.isJson()) {
    session.out().line(jsonText(jsonFrom(answered)));
  }
  return status == ExitStatus::done && answered.preview.someFoldersAreLeftOut ? ExitStatus::failed : status;
}

}  // namespace

constexpr CommandSpec askCommand{
    .name = "ask",
    .summary = "Make a plan for a request in plain words, and show what it would do",
    .details =
        "Turns a request such as \"delete screenshots older than two weeks\" into a plan, scans the folder that it "
        "means and shows each file that matches, and why it is selected or not. Nothing is changed without "
        "--apply.\n\n"
        "With --apply what is selected is moved as one run that 'orvanectl restore' brings back, inside the granted "
        "folders only. A plan without anything to select files by is shown and not used.",
    .arguments = {.name = "PROMPT", .help = "The request, as one argument: put it in quotes.", .least = 1, .most = 1},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
