#include "core/tasks/AskTask.h"

#include "core/assistant/AgentCoordinator.h"
#include "core/assistant/LocalModelClient.h"
#include "core/base/text/UnicodeText.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/plans/RequestUnderstanding.h"
#include "core/tasks/PlaceSteps.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace orvane {
namespace {

// Whether a program's name may stand among the words that no table knows.
bool hasWordsLeft(const Understanding& understanding) {
  if (understanding.doubt == Doubt::negation || understanding.doubt == Doubt::otherRoom) return false;
  return std::ranges::any_of(understanding.words,
                             [](const ReadWord& word) { return word.meaning == WordMeaning::none; });
}

bool isAdded(const PlannedAnswer& answer, ScanCategory category) {
  for (auto i = answer.addedFrom; i < answer.plan.steps.size(); ++i) {
    if (answer.plan.steps[i].filter.categories == std::vector{category}) return true;
  }
  return false;
}

}  // namespace

PlannedAnswer askPlanner(const TaskServices& services, const std::string& prompt, AIProvider provider,
                         const std::stop_token& stop) {
  auto answer = services.agent.requestAnswer(prompt, provider, {}, stop);
  const auto maker = answer.provider == AIProvider::heuristic ? PlanMaker::tables : PlanMaker::model;
  const RequestText text{.typed = prompt, .words = answer.words.text()};
  answer.understanding = understand(text, answer.reading, answer.plan, maker, {});
  if (maker == PlanMaker::tables && hasWordsLeft(answer.understanding)) {
    const auto names = programNames(services, stop);
    answer.understanding = understand(text, answer.reading, answer.plan, maker, names);
    const auto& programs = answer.understanding.programs;
    if (!programs.empty()) {
      answer.plan = planForPrograms(services, answer.plan.userGoal, answer.reading, programs, stop);
      answer.placesFrom = 0;
    }
  }
  if (maker == PlanMaker::tables && answer.understanding.programs.empty()) {
    for (const auto& folder : answer.understanding.otherFolders) OfflineHeuristicParser::addFolder(answer.plan, folder);
  }
  for (auto& word : answer.understanding.words) word.span = answer.words.typed(word.span);
  std::ranges::stable_sort(answer.understanding.words, {}, [](const ReadWord& word) { return word.span.start; });
  return answer;
}

PlannedAnswer withPlaces(const TaskServices& services, PlannedAnswer answer, ScanCategory category) {
  const auto last = answer.plan.steps.size();
  if (answer.placesFrom == PlannedAnswer::noStep) answer.placesFrom = last;
  if (answer.addedFrom == PlannedAnswer::noStep) answer.addedFrom = last;
  answer.plan.steps.push_back(stepForPlaces(services, category));
  return answer;
}

std::optional<Proposal> proposeAnswer(const TaskServices& services, const PlannedAnswer& answer, PlanReach reach,
                                      Date now, const TaskMonitor& monitor, WhenUnsure whenUnsure) {
  Notices said;
  if (answer.fallbackReason) said.emplace_back(PlannerFailed{answer.asked, *answer.fallbackReason});
  PlanScope scope{.placesFrom = answer.placesFrom};
  if (!answer.understanding.isSure() && whenUnsure == WhenUnsure::unselected) scope.selectsFrom = answer.addedFrom;
  return proposePlan(services, answer.plan, reach, now, monitor, std::move(said), scope);
}

std::vector<PlacesBeside> placesBeside(const TaskServices& services, const PlannedAnswer& answer,
                                       const TaskMonitor& monitor) {
  const auto& reading = answer.reading;
  if (!answer.understanding.programs.empty() || answer.understanding.room ||
      !(reading.wantsCaches || reading.wantsLogs)) {
    return {};
  }
  CleaningPlan all;
  const auto ask = [&](ScanCategory category) { all.steps.push_back(stepForPlaces(services, category)); };
  if (reading.wantsCaches) {
    ask(ScanCategory::browserCaches);
    ask(ScanCategory::caches);
  }
  if (reading.wantsLogs) ask(ScanCategory::logs);
  std::vector<PlacesBeside> beside(all.steps.size());
  for (const auto& place :
       placeStepItems(services, all, {.placesFrom = 0}, planBoundary(services), ReferenceClock::now(), monitor)) {
    beside[place.step].rows.add(place.item.fileSize());
  }
  for (std::size_t i = 0; i < beside.size(); ++i) beside[i].category = all.steps[i].filter.categories->front();
  std::erase_if(beside,
                [&](const PlacesBeside& places) { return places.rows.count == 0 || isAdded(answer, places.category); });
  return beside;
}

bool hasKey(const TaskServices& services, AIProvider provider) {
  return services.agent.hasKey(provider);
}

std::string localModelProblem(const TaskServices& services) {
  return services.agent.localModelProblem();
}

std::optional<HttpRequest> requestToSend(const TaskServices& services, const std::string& prompt, AIProvider provider) {
  return services.agent.keylessRequest(prompt, provider, {});
}

LocalPrompt localPrompt(const std::string& prompt) {
  const auto asked = LocalModelClient::promptFor({.userPrompt = prompt, .files = {}, .targetFolders = {}});
  return {.instructions = asked.instructions, .message = asked.message};
}

std::string requestText(const HttpRequest& request) {
  auto text = fmt::format("POST {}\nContent-Type: application/json\n", escapedForDisplay(request.url));
  for (const auto& header : request.headers) text += fmt::format("{}: {}\n", header.name, header.value);
  return text + "\n" + request.body;
}

}  // namespace orvane
