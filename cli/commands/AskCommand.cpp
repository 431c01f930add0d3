#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Consent.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/PlanText.h"
#include "core/base/text/Json.h"
#include "core/tasks/AskTask.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <array>
#include <optional>
#include <string>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 4> providers{"offline_heuristic", "anthropic", "openai", "local_model"};

constexpr std::array options{
    OptionSpec{
        .name = "--provider",
        .valueName = "PROVIDER",
        .help = "Who makes the plan: offline_heuristic, which looks for keywords and uses no network, local_model, the "
                "model server of this machine, or another language model.",
        .kind = ValueKind::choice,
        .choices = providers},
    OptionSpec{.name = "--show-request",
               .valueName = "",
               .help = "Print what would be sent to the provider, but for the key, and send nothing."},
    OptionSpec{.name = "--apply", .valueName = "", .help = "Carry out what is selected, after asking."},
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

Json jsonFrom(const PlannedAnswer& answer, const Proposal& proposal) {
  const auto* refused = firstNotice<PlanRefused>(proposal.notices());
  Json json = Json::object();
  json["plan"] = answer.plan.toJson();
  json["matches"] = planMatchesJson(answer.plan, proposal);
  json["validationError"] = refused != nullptr ? Json(refused->fault) : Json();
  json["provider"] = rawValue(answer.provider);
  json["usedFallback"] = answer.provider != answer.asked;
  return json;
}

AIProvider providerFrom(const Arguments& arguments) {
  const auto name = arguments.value("--provider");
  return name ? aiProviderFromRawValue(*name).value_or(AIProvider::heuristic) : AIProvider::heuristic;
}

Json jsonFrom(const HttpRequest& request) {
  Json json = Json::object();
  json["method"] = "POST";
  json["url"] = request.url;
  auto& headers = json["headers"] = Json::object();
  headers["Content-Type"] = "application/json";
  for (const auto& header : request.headers) headers[header.name] = header.value;
  json["body"] = parseJson(request.body);
  return json;
}

ExitStatus showRequest(Session& session, const std::string& prompt, AIProvider provider) {
  const auto request = requestToSend(TaskServices::shared(), prompt, provider);
  if (!request)
    throw UsageError("--show-request needs --provider anthropic or openai; with others nothing leaves this machine");
  if (session.isJson()) {
    session.out().line(jsonText(jsonFrom(*request)));
    return ExitStatus::done;
  }
  session.out().line(requestText(*request));
  return ExitStatus::done;
}

void printAnswer(Session& session, const PlannedAnswer& answer) {
  if (answer.asked != AIProvider::heuristic) {
    session.out().line(fmt::format("Planner:  {}", displayName(answer.provider)));
  }
  printPlan(session, answer.plan);
  session.out().flush();
}

ExitStatus apply(Session& session, const Arguments& arguments, const PlannedAnswer& answer, const Proposal& proposal) {
  const bool isRefused = firstNotice<PlanRefused>(proposal.notices()) != nullptr;
  const auto run = isRefused ? AskedRun{.status = ExitStatus::failed} : askAndRun(session, arguments, proposal);
  if (session.isJson()) {
    auto json = jsonFrom(answer, proposal);
    json["summary"] = run.report ? run.report->summary().toJson() : Json();
    session.out().line(jsonText(json));
  }
  return run.status;
}

ExitStatus run(Session& session, const Arguments& arguments) {
  const auto& prompt = arguments.plain().front();
  const auto provider = providerFrom(arguments);
  if (arguments.has("--show-request")) return showRequest(session, prompt, provider);
  const bool isToSave = arguments.has("--save");
  const bool applies = arguments.has("--apply") && !isToSave;
  if (applies) requireConsentPossible(arguments);
  const auto& services = TaskServices::shared();
  const auto answer = askPlanner(services, prompt, provider, session.stop());
  if (session.stop().stop_requested()) return interruptedBeforeChange();
  if (!session.isJson() && !isToSave) printAnswer(session, answer);
  const auto reach = applies || isToSave ? PlanReach::boundary : PlanReach::everyFolder;
  std::optional<Proposal> proposal;
  {
    ProgressLine line(session);
    proposal = proposeAnswer(services, answer, reach, ReferenceClock::now(), scanMonitor(session, line));
  }
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  const bool isRefused = firstNotice<PlanRefused>(proposal->notices()) != nullptr;
  if (isToSave) {
    const auto status = isRefused ? ExitStatus::failed : saveProposal(session, arguments, proposal->approve());
    return statusWith(proposal->notices(), status);
  }
  if (!session.isJson() && !isRefused) printRows(session, *proposal);
  auto status = isRefused ? ExitStatus::failed : ExitStatus::done;
  if (applies) {
    status = apply(session, arguments, answer, *proposal);
  } else if (session.isJson()) {
    session.out().line(jsonText(jsonFrom(answer, *proposal)));
  }
  return statusWith(proposal->notices(), status);
}

}  // namespace

constexpr CommandSpec askCommand{
    .name = "ask",
    .summary = "Make a plan for a request in plain words, and show what it would do",
    .details =
        "Turns a request such as \"delete screenshots older than two weeks\" into a plan, scans the folder that it "
        "means and shows each file that matches, and why it is selected or not. Nothing is changed without "
        "--apply.\n\n"
        "With --provider a language model makes the plan. It is sent the request and nothing about your files; "
        "--show-request shows it to the letter. Store a key first: 'orvanectl keys set PROVIDER'. Where the provider "
        "cannot be used, the plan is made offline and the reason is said. With local_model nothing leaves this "
        "machine: the server is the one that names topics, and only a loopback address is asked.\n\n"
        "With --apply what is selected is moved as one run that 'orvanectl restore' brings back, inside the granted "
        "folders only. A plan without anything to select files by is shown and not used.",
    .arguments = {.name = "PROMPT", .help = "The request, as one argument: put it in quotes.", .least = 1, .most = 1},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
