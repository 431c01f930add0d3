#include "core/plans/RequestRooms.h"

#include "core/plans/PromptReading.h"
#include "core/plans/RequestSentence.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

using Words = std::span<const std::string_view>;

constexpr auto duplicateWords = std::to_array<std::string_view>(
    {"duplicate", "duplicates", "duplicated", "dupe", "dupes", "deduplicate", "duplicated", "extra copies", "identical",
     "same files", "same photos", "same file"});
constexpr auto uninstallWords =
    std::to_array<std::string_view>({"uninstall", "uninstalling", "uninstaller", "deinstall", "uninstalled"});
constexpr auto appWords =
    std::to_array<std::string_view>({"app", "apps", "application", "applications", "program", "programs", "software",
                                     "app leftovers", "leftovers", "leftover"});
constexpr auto historyWords = std::to_array<std::string_view>(
    {"undo", "restore", "recover", "undelete", "revert", "bring back", "put back", "get back", "roll back", "rollback",
     "bring them back", "put it back", "did you delete"});
constexpr auto trashNouns = std::to_array<std::string_view>({"trash", "bin"});
constexpr auto regularWords = std::to_array<std::string_view>(
    {"schedule", "scheduled", "automatically", "automatic", "automate", "regularly", "periodically", "daily", "weekly",
     "monthly", "nightly", "each day", "each week", "each month", "once a", "every night"});
constexpr auto regularUnits =
    std::to_array<std::string_view>({"every day", "every week", "every month", "every monday", "every friday",
                                     "every sunday", "every saturday", "every morning", "every evening"});
constexpr auto mapWords = std::to_array<std::string_view>({"fills my",
                                                           "fills the",
                                                           "filling",
                                                           "fills up",
                                                           "taking up",
                                                           "takes up",
                                                           "take up",
                                                           "takes space",
                                                           "takes the most",
                                                           "taking space",
                                                           "uses space",
                                                           "using space",
                                                           "using all",
                                                           "using up",
                                                           "uses the most",
                                                           "using the most",
                                                           "uses most",
                                                           "disk usage",
                                                           "storage usage",
                                                           "space usage",
                                                           "used space",
                                                           "eating",
                                                           "eats",
                                                           "largest folders",
                                                           "biggest folders",
                                                           "largest folder",
                                                           "biggest folder",
                                                           "treemap",
                                                           "where did my space go",
                                                           "map"});
constexpr auto mapQuestions = std::to_array<std::string_view>(
    {"disk full", "disk is full", "how full", "how much space", "where is my space", "drive full"});
constexpr auto privacyWords =
    std::to_array<std::string_view>({"privacy", "telemetry", "do you send", "is sent", "gets sent", "permission",
                                     "permissions", "do you collect", "leaves my"});
constexpr auto intoWords =
    std::to_array<std::string_view>({"to trash", "to the trash", "to my trash", "in the trash", "into the trash",
                                     "to the bin", "in the bin", "into the bin", "in trash"});
constexpr auto carryingWords = std::to_array<std::string_view>({"move", "put", "throw", "send", "toss"});

std::string folderOf(const PromptReading& reading) {
  return std::string(reading.folder.value_or(""));
}

bool namesAnObject(const PromptReading& reading) {
  return reading.folder || reading.wantsScreenshots || reading.wantsInstallers || reading.wantsCaches ||
         reading.wantsLogs || reading.ageDays || reading.sizeBytes;
}

// The words beside those of the request for an application: "uninstall the zoom app" names "zoom".
std::string appName(const RequestSentence& sentence) {
  constexpr auto others = std::to_array<std::string_view>(
      {"the",  "my",        "a",           "an",           "all",     "and",      "its",      "with",       "please",
       "app",  "apps",      "application", "applications", "program", "programs", "software", "completely", "fully",
       "from", "of",        "this",        "computer",     "how",     "do",       "i",        "can",        "you",
       "to",   "leftovers", "leftover",    "files",        "want",    "for",      "me"});
  constexpr auto verbs =
      std::to_array<std::string_view>({"delete", "remove", "clean", "clear", "purge", "get", "rid", "trash"});
  std::string name;
  for (const auto& token : sentence.tokens()) {
    const auto isOneOf = [&](Words words) { return std::ranges::find(words, token.text) != words.end(); };
    if (isOneOf(others) || isOneOf(verbs) || isOneOf(uninstallWords)) continue;
    if (!name.empty()) name += ' ';
    name += token.text;
  }
  return name;
}

bool asksForApps(const RequestSentence& sentence, const PromptReading& reading) {
  if (sentence.hasAny(uninstallWords)) return true;
  const bool removes = reading.wantsRemoval || sentence.has("get rid of");
  return removes && sentence.hasAny(appWords) && !namesAnObject(reading);
}

// "empty the trash", "what is in the trash"; not "trash old logs" nor "move old logs to the trash".
bool asksForTrash(const RequestSentence& sentence, const PromptReading& reading) {
  if (!sentence.hasAny(trashNouns)) return false;
  if (sentence.hasAny(intoWords)) return !sentence.hasAny(carryingWords);
  if (sentence.has("empty")) return true;
  constexpr auto phrases =
      std::to_array<std::string_view>({"the trash", "my trash", "from trash", "trash can", "trash folder", "trash bin",
                                       "recycle bin", "the bin", "my bin"});
  if (sentence.hasAny(phrases)) return true;
  const auto& tokens = sentence.tokens();
  const bool endsWithTrash = tokens.size() > 1 && tokens.back().text == "trash";
  return endsWithTrash && !namesAnObject(reading);
}

std::string_view regularity(const RequestSentence& sentence) {
  constexpr auto daily = std::to_array<std::string_view>({"daily", "every day", "each day", "once a day", "nightly",
                                                          "every night", "every morning", "every evening", "a day"});
  constexpr auto monthly = std::to_array<std::string_view>({"monthly", "every month", "each month"});
  if (sentence.hasAny(daily)) return "daily";
  return sentence.hasAny(monthly) || sentence.has("once a month") ? "monthly" : "weekly";
}

std::string_view wayOfOrganizing(const RequestSentence& sentence) {
  constexpr auto dates = std::to_array<std::string_view>({"by date", "by year", "by month", "by day", "by age"});
  constexpr auto types = std::to_array<std::string_view>({"by type", "by kind", "by extension", "by file type"});
  if (sentence.hasAny(dates)) return "date";
  return sentence.hasAny(types) ? "type" : "";
}

bool asksForOrganizer(const RequestSentence& sentence, const PromptReading& reading) {
  if (!reading.wantsOrganizing) return false;
  if (!wayOfOrganizing(sentence).empty()) return true;
  const bool hasCriterion = reading.wantsScreenshots || reading.wantsInstallers || reading.ageDays || reading.sizeBytes;
  if (reading.wantsRemoval) return !hasCriterion && !reading.wantsCaches && !reading.wantsLogs && reading.folder;
  return !hasCriterion;
}

}  // namespace

std::optional<RoomRequest> roomFor(const RequestSentence& sentence, const PromptReading& reading) {
  const auto folder = folderOf(reading);
  if (sentence.hasAny(duplicateWords)) return RoomRequest{.room = Room::duplicates, .folder = folder};
  if (asksForApps(sentence, reading)) return RoomRequest{.room = Room::apps, .name = appName(sentence)};
  if (sentence.hasAny(historyWords) || (sentence.has("history") && !reading.wantsRemoval))
    return RoomRequest{.room = Room::history};
  if (asksForTrash(sentence, reading)) return RoomRequest{.room = Room::trash};
  if (sentence.hasAny(regularWords) || sentence.hasAny(regularUnits)) {
    return RoomRequest{.room = Room::schedule, .way = regularity(sentence)};
  }
  if (sentence.hasAny(mapWords) || sentence.hasAny(mapQuestions))
    return RoomRequest{.room = Room::map, .folder = folder};
  if (sentence.hasAny(privacyWords)) return RoomRequest{.room = Room::privacy};
  if (asksForOrganizer(sentence, reading)) {
    return RoomRequest{.room = Room::organize, .folder = folder, .way = wayOfOrganizing(sentence)};
  }
  return std::nullopt;
}

std::optional<RoomRequest> cleanupFor(RequestSentence sentence, const PromptReading& reading) {
  if (namesAnObject(reading)) return std::nullopt;
  constexpr auto words = std::to_array<std::string_view>(
      {"up",      "out",         "space",  "room",   "disk", "disc",       "computer", "laptop",  "mac",     "pc",
       "machine", "drive",       "hard",   "system", "junk", "everything", "clutter",  "rubbish", "garbage", "unneeded",
       "useless", "unnecessary", "safely", "stuff",  "temp", "temporary",  "files",    "storage", "the",     "my",
       "some",    "on",          "make",   "more",   "can",  "i",          "what",     "safe",    "to",      "is",
       "reclaim", "save",        "all",    "please", "from", "of",         "in"});
  constexpr auto verbs = std::to_array<std::string_view>({"reclaim", "make", "save"});
  constexpr auto nouns =
      std::to_array<std::string_view>({"space", "room", "disk", "computer", "laptop", "mac", "pc", "junk", "clutter",
                                       "temp", "temporary", "storage", "system", "drive", "safely"});
  sentence.explainAll(words);
  if (!sentence.isAllKnown() || !sentence.hasAny(nouns)) return std::nullopt;
  if (!reading.wantsRemoval && !sentence.hasAny(verbs)) return std::nullopt;
  return RoomRequest{.room = Room::cleanup};
}

}  // namespace orvane
