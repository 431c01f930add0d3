#include "cli/Arguments.h"
#include "cli/Consent.h"
#include "cli/PlanRun.h"
#include "cli/PlanScan.h"
#include "cli/PlanText.h"
#include "cli/Session.h"
#include "cli/UsageError.h"
#include "cli/commands/Commands.h"
#include "core/assistant/AgentCoordinator.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/plans/CleaningPlanSchema.h"

#include <fmt/format.h>

#include <array>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 3> providers{"offline_heuristic", "anthropic", "openai"};

constexpr std::array options{
    OptionSpec{.name = "--provider",
               .valueName = "PROVIDER",
               .help =
                   "Who makes the plan: offline_heuristic, which looks for keywords and uses no network, or a language "
                   "model.",
               .kind = ValueKind::choice,
               .choices = providers},
    OptionSpec{.name = "--show-request",
               .valueName = "",
               .help = "Print what would be sent to the provider, but for the key, and send nothing."},
    OptionSpec{.name = "--apply", .valueName = "", .help = "Carry out what is selected, after asking."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

struct Answered {
  AIProvider askedProvider = AIProvider::heuristic;
  AIProvider provider = AIProvider::heuristic;
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
  json["provider"] = rawValue(answered.provider);
  json["usedFallback"] = answered.provider != answered.askedProvider;
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
  const auto request = AgentCoordinator::shared().keylessRequest(prompt, provider, {});
  if (!request) throw UsageError("--show-request needs --provider anthropic or openai; without one nothing is sent");
  if (session.isJson()) {
    session.out().line(jsonText(jsonFrom(*request)));
    return ExitStatus::done;
  }
  session.out().line(fmt::format("POST {}\nContent-Type: application/json", escapedForDisplay(request->url)));
  for (const auto& header : request->headers) session.out().line(fmt::format("{}: {}", header.name, header.value));
  session.out().line(fmt::format("\n{}", request->body));
  return ExitStatus::done;
}

// Absent when interrupted.
std::optional<Answered> ask(const std::string& prompt, AIProvider provider, const std::stop_token& stop) {
  auto answer = AgentCoordinator::shared().requestAnswer(prompt, provider, {}, stop);
  if (stop.stop_requested()) return std::nullopt;
  if (answer.fallbackReason) {
    Session::report(fmt::format("planned offline, not by {}: {}", displayName(provider),
                                escapedForDisplay(*answer.fallbackReason)));
  }
  Answered answered{.askedProvider = provider,
                    .provider = answer.provider,
                    .plan = std::move(answer.plan),
                    .fault = std::nullopt,
                    .preview = {}};
  answered.fault = CleaningPlanSchema::firstFault(answered.plan);
  return answered;
}

ExitStatus run(Session& session, const Arguments& arguments) {
  const auto& prompt = arguments.plain().front();
  const auto provider = providerFrom(arguments);
  if (arguments.has("--show-request")) return showRequest(session, prompt, provider);
  const bool applies = arguments.has("--apply");
  if (applies) requireConsentPossible(arguments);
  auto asked = ask(prompt, provider, session.stop());
  if (!asked) {
    Session::report("interrupted; nothing was changed");
    return ExitStatus::interrupted;
  }
  auto& answered = *asked;
  if (!session.isJson()) {
    if (provider != AIProvider::heuristic) {
      session.out().line(fmt::format("Planner:  {}", displayName(answered.provider)));
    }
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
        "With --provider a language model makes the plan. It is sent the request and nothing about your files; "
        "--show-request shows it to the letter. Store a key first: 'orvanectl keys set PROVIDER'. Where the provider "
        "cannot be used, the plan is made offline and the reason is said.\n\n"
        "With --apply what is selected is moved as one run that 'orvanectl restore' brings back, inside the granted "
        "folders only. A plan without anything to select files by is shown and not used.",
    .arguments = {.name = "PROMPT", .help = "The request, as one argument: put it in quotes.", .least = 1, .most = 1},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
