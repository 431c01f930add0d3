#include "cli/commands/Commands.h"
#include "cli/commands/SaveAsRule.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Consent.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/PlanText.h"
#include "cli/text/ReadingText.h"
#include "core/base/text/Json.h"
#include "core/tasks/AskTask.h"
#include "core/tasks/ReadEntries.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <array>
#include <optional>
#include <string>
#include <utility>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 4> providers{"offline_heuristic", "anthropic", "openai", "local_model"};

constexpr std::array<std::string_view, 3> placeCategories{"browserCaches", "caches", "logs"};

constexpr std::array askOptions{
    OptionSpec{
        .name = "--provider",
        .valueName = "PROVIDER",
        .help = "Who makes the plan: offline_heuristic, which looks for keywords and uses no network, local_model, the "
                "model server of this machine, or another language model.",
        .kind = ValueKind::choice,
        .choices = providers},
    OptionSpec{.name = "--show-request",
               .valueName = "",
               .help = "Print what would be sent to the provider, but for the key, or asked of the model on this "
                       "machine, and send nothing."},
    OptionSpec{.name = "--with",
               .valueName = "CATEGORY",
               .help = "Take the known places of a category as well: what a request for caches or logs leaves aside.",
               .kind = ValueKind::choice,
               .choices = placeCategories,
               .repeat = OptionSpec::Repeat::any},
    OptionSpec{.name = "--apply", .valueName = "", .help = "Carry out what is selected, after asking."},
    OptionSpec{.name = "--anyway",
               .valueName = "",
               .help = "Take the closest plan as it is where the request was not understood."},
    OptionSpec{.name = "--save-rule",
               .valueName = "NAME",
               .help = "Save the plan as a rule of this name, for scheduled cleanups, and show what it takes."},
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

// A request, what the planner answered, and what the user says to it.
struct Asked {
  const Arguments& arguments;
  const std::string& prompt;
  PlannedAnswer answer;

  [[nodiscard]] bool isToSave() const { return arguments.has("--save"); }
  [[nodiscard]] bool applies() const { return arguments.has("--apply") && !isToSave(); }
  // Whether another command does it, and nobody wants to see a plan.
  [[nodiscard]] bool isForAnother(const Session& session) const {
    return answer.understanding.doubt == Doubt::otherRoom && !session.isJson() && !arguments.has("--apply") &&
           !isToSave() && !arguments.has("--anyway") && !arguments.has("--save-rule");
  }
  // Whether the plan may be carried out: it is what was asked for, or the user takes it as it is.
  [[nodiscard]] bool mayApply() const {
    return answer.understanding.isSure() || arguments.has("--anyway") || arguments.has("--with");
  }
};

Json jsonFrom(const Asked& asked, const Proposal& proposal) {
  const auto& answer = asked.answer;
  const auto& understanding = answer.understanding;
  const auto* refused = firstNotice<PlanRefused>(proposal.notices());
  Json json = Json::object();
  json["plan"] = answer.plan.toJson();
  auto& matches = json["matches"] = planMatchesJson(answer.plan, proposal);
  if (!asked.mayApply()) {
    // Steps that only list say how their files would stand.
    for (auto& match : matches) match["isSelected"] = false;
  }
  json["validationError"] = refused != nullptr ? Json(refused->fault) : Json();
  json["provider"] = rawValue(answer.provider);
  json["usedFallback"] = answer.provider != answer.asked;
  json["understood"] = understanding.isSure();
  json["doubt"] = understanding.isSure() ? Json() : Json(rawValue(understanding.doubt));
  auto& reading = json["reading"] = Json::array();
  for (const auto& entry : readEntries(asked.prompt, answer)) reading.push_back(entry.toJson());
  json["room"] = understanding.room ? roomJson(*understanding.room) : Json();
  return json;
}

AIProvider askProviderFrom(const Arguments& arguments) {
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

ExitStatus showLocalPrompt(Session& session, const std::string& prompt) {
  const auto [instructions, message] = localPrompt(prompt);
  if (session.isJson()) {
    session.out().line(jsonText(Json{{"instructions", instructions}, {"prompt", message}}));
  } else {
    session.out().line(instructions + "\n\n" + message);
  }
  return ExitStatus::done;
}

ExitStatus showRequest(Session& session, const std::string& prompt, AIProvider provider) {
  if (provider == AIProvider::localModel) return showLocalPrompt(session, prompt);
  const auto request = requestToSend(TaskServices::shared(), prompt, provider);
  if (!request)
    throw UsageError("--show-request needs --provider anthropic, openai or local_model; without one nobody is asked");
  if (session.isJson()) {
    session.out().line(jsonText(jsonFrom(*request)));
    return ExitStatus::done;
  }
  session.out().line(requestText(*request));
  return ExitStatus::done;
}

void printAnswer(Session& session, const Asked& asked) {
  const auto& answer = asked.answer;
  const auto& understanding = answer.understanding;
  auto& out = session.out();
  if (understanding.room) out.line(roomText(*understanding.room) + ".");
  if (!understanding.isSure()) {
    out.line("Not understood; here is the closest");
    out.line(fmt::format("{:<10}{}.", "Because:", doubtText(asked.prompt, answer)));
  }
  if (answer.asked != AIProvider::heuristic) out.line(fmt::format("Planner:  {}", displayName(answer.provider)));
  printPlan(session, answer.plan);
  printReading(session, asked.prompt, answer);
  out.flush();
}

// Throws UsageError where the plan may be another one than was meant, before anybody is asked.
void requireUnderstood(const Asked& asked) {
  if (asked.mayApply()) return;
  const auto& room = asked.answer.understanding.room;
  const bool isForRule = asked.arguments.has("--save-rule");
  const auto* const nothing = isForRule ? "no rule was saved" : "nothing was moved";
  const auto* const allTheSame = isForRule ? "makes a rule of" : "carries out";
  if (asked.answer.understanding.doubt == Doubt::otherRoom && room) {
    throw UsageError(fmt::format("{}. {}; --anyway {} this plan all the same", nothing, roomText(*room), allTheSame));
  }
  throw UsageError(fmt::format("{}, as the request was not understood: {}; --anyway {} the closest plan all the same",
                               nothing, doubtText(asked.prompt, asked.answer), allTheSame));
}

ExitStatus apply(Session& session, const Asked& asked, const Proposal& proposal) {
  const auto run = askAndRun(session, asked.arguments, proposal);
  if (session.isJson()) {
    auto json = jsonFrom(asked, proposal);
    json["summary"] = run.report ? run.report->summary().toJson() : Json();
    session.out().line(jsonText(json));
  }
  return run.status;
}

std::optional<Proposal> propose(Session& session, const Asked& asked) {
  const auto reach = asked.applies() || asked.isToSave() ? PlanReach::boundary : PlanReach::everyFolder;
  const auto whenUnsure = asked.arguments.has("--anyway") ? WhenUnsure::asPlanned : WhenUnsure::unselected;
  ProgressLine line(session);
  return proposeAnswer(TaskServices::shared(), asked.answer, reach, ReferenceClock::now(), scanMonitor(session, line),
                       whenUnsure);
}

void printAskProposal(Session& session, const Asked& asked, const Proposal& proposal) {
  printRows(session, proposal);
  for (const auto& beside : placesBeside(TaskServices::shared(), asked.answer, {.stop = session.stop()})) {
    printBeside(session, beside);
  }
}

PlannedAnswer answerTo(Session& session, const Arguments& arguments, const std::string& prompt) {
  const auto& services = TaskServices::shared();
  auto answer = askPlanner(services, prompt, askProviderFrom(arguments), session.stop());
  for (const auto& name : arguments.values("--with")) {
    answer = withPlaces(services, std::move(answer), scanCategoryFromRawValue(name).value());
  }
  return answer;
}

ExitStatus runAsk(Session& session, const Arguments& arguments) {
  const auto& prompt = arguments.plain().front();
  if (arguments.has("--show-request")) return showRequest(session, prompt, askProviderFrom(arguments));
  if (arguments.has("--apply") && !arguments.has("--save")) requireConsentPossible(arguments);
  const Asked asked{arguments, prompt, answerTo(session, arguments, prompt)};
  if (session.stop().stop_requested()) return interruptedBeforeChange();
  if (asked.isForAnother(session)) {
    session.out().line(roomText(*asked.answer.understanding.room) + ".");
    printReading(session, prompt, asked.answer);
    return ExitStatus::done;
  }
  if (!session.isJson() && !asked.isToSave()) printAnswer(session, asked);
  if (const auto name = arguments.value("--save-rule")) {
    requireUnderstood(asked);
    return saveAsRule(session, asked.answer, *name);
  }
  const auto proposal = propose(session, asked);
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  const bool isRefused = firstNotice<PlanRefused>(proposal->notices()) != nullptr;
  auto status = isRefused ? ExitStatus::failed : ExitStatus::done;
  if (asked.isToSave()) {
    if (!isRefused) status = saveProposal(session, arguments, proposal->approve());
    return statusWith(proposal->notices(), status);
  }
  if (!session.isJson() && !isRefused) printAskProposal(session, asked, *proposal);
  if (asked.applies() && !isRefused) {
    requireUnderstood(asked);
    status = apply(session, asked, *proposal);
  } else if (session.isJson()) {
    auto json = jsonFrom(asked, *proposal);
    if (asked.applies()) json["summary"] = Json();
    session.out().line(jsonText(json));
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
        "Beside the plan stands what each word became, what was assumed and which words meant nothing. Where a request "
        "may mean something else (a word that is not known, a question, something that must stay) nothing is selected, "
        "and --apply refuses with exit status 2 unless --anyway is given. Where another command does what was asked "
        "for, it is named.\n\n"
        "With --save-rule the plan becomes a rule with the same filter, once it passes the checks of a rule; nothing "
        "is "
        "moved. A plan that sorts into several folders can be none.\n\n"
        "With --apply what is selected is moved as one run that 'orvanectl restore' brings back, inside the granted "
        "folders only. A plan without anything to select files by is shown and not used.",
    .arguments = {.name = "PROMPT", .help = "The request, as one argument: put it in quotes.", .min = 1, .max = 1},
    .options = askOptions,
    .run = runAsk,
};

}  // namespace orvane::cli
