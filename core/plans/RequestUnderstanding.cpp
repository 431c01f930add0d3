#include "core/plans/RequestUnderstanding.h"

#include "core/base/text/AsciiText.h"
#include "core/base/text/UnicodeText.h"
#include "core/plans/PromptReading.h"
#include "core/plans/RequestRooms.h"
#include "core/plans/RequestSentence.h"
#include "core/plans/records/CleaningPlan.h"

#include <algorithm>
#include <array>
#include <optional>

namespace orvane {
namespace {

using Phrase = std::string_view;

// --- words that turn a request around

constexpr auto negations = std::to_array<Phrase>(
    {"don t",       "dont",    "do not",  "not",      "never",   "keep",       "keeping",    "except",
     "excluding",   "exclude", "without", "unless",   "but",     "can t",      "cannot",     "won t",
     "shouldn t",   "mustn t", "leave",   "preserve", "protect", "no",         "nothing",    "none",
     "avoid",       "ignore",  "skip",    "instead",  "besides", "apart from", "other than", "aside from",
     "rather than", "isn t",   "aren t",  "wouldn t", "haven t", "spare",      "no longer"});
constexpr auto questionWords =
    std::to_array<Phrase>({"what", "which", "how", "list", "show", "why", "whether", "tell me"});
constexpr auto questionBeginnings = std::to_array<Phrase>(
    {"when",   "where", "who", "is",   "are", "was",  "were",  "do", "does",  "did",     "can",     "could",
     "should", "would", "may", "will", "has", "have", "shall", "am", "count", "display", "explain", "does"});
// Words that ask for a list, and fit a plan that only lists.
constexpr auto lookingWords =
    std::to_array<Phrase>({"find", "search for", "search", "look for", "locate", "see", "view", "review"});

// --- words that change nothing

constexpr auto fillers = std::to_array<Phrase>(
    {"the",    "a",       "an",        "my",          "our",    "all",    "any",    "every", "of",
     "on",     "in",      "at",        "from",        "for me", "inside", "please", "file",  "files",
     "folder", "folders", "directory", "directories", "item",   "items",  "things", "stuff", "everything",
     "ones",   "and",     "or",        "both",        "that",   "are",    "is",     "just",  "only",
     "me",     "i",       "very",      "really",      "there"});
constexpr auto fillerPhrases = std::to_array<Phrase>(
    {"want to",       "would like to",      "i d like to", "like you to", "want you to", "help me",
     "clean up",      "clear up",           "free up",     "tidy up",     "clean out",   "clear out",
     "free up space", "free up disk space", "free space",  "older than",  "larger than", "bigger than",
     "more than",     "greater than",       "at least",    "or more",     "or older",    "or larger",
     "or bigger",     "and older",          "too old",     "too big",     "too large",   "free disk space"});
constexpr auto comparisons = std::to_array<Phrase>({"over", "above"});
// Other words for removing, and for carrying to the Trash: they fit a plan that does so.
constexpr auto otherRemovalWords = std::to_array<Phrase>({"get rid of", "erase", "wipe", "wipe out", "dump", "toss",
                                                          "discard", "drop", "throw away", "throw out", "clean away"});
constexpr auto toTrashPhrases =
    std::to_array<Phrase>({"to trash", "to the trash", "to my trash", "in the trash", "into the trash", "to the bin",
                           "in the bin", "into the bin", "in trash", "to the trash bin"});
constexpr auto carryingVerbs = std::to_array<Phrase>({"move", "put", "throw", "send"});
constexpr auto emptyingPhrases = std::to_array<Phrase>({"empty the", "empty my", "empty all", "empty"});

struct NounsOf {
  bool PromptReading::*wants;
  std::array<Phrase, 10> words;
};
// Words that name the same again.
constexpr std::array nounRows{
    NounsOf{&PromptReading::wantsScreenshots,
            {"image", "images", "png", "pngs", "captures", "capture", "screen", "", "", ""}},
    NounsOf{&PromptReading::wantsInstallers,
            {"package", "packages", "disk images", "disk image", "iso", "isos", "zip", "downloaded", "leftover", ""}},
    NounsOf{&PromptReading::wantsCaches,
            {"app", "apps", "application", "applications", "user", "temporary", "data", "", "", ""}},
    NounsOf{&PromptReading::wantsLogs,
            {"app", "apps", "application", "applications", "user", "system", "", "", "", ""}},
};

bool isTrashing(const CleaningPlan& plan) {
  return std::ranges::any_of(plan.steps, [](const auto& step) { return step.action == PlannedAction::trash; });
}

bool isMoving(const CleaningPlan& plan) {
  return std::ranges::any_of(plan.steps, [](const auto& step) { return step.action == PlannedAction::move; });
}

bool asks(const RequestSentence& sentence, std::string_view typed, const CleaningPlan& plan) {
  const auto text = trimmed(typed);
  constexpr auto marks = std::to_array<Phrase>({"?", "？", "؟", "¿"});
  if (std::ranges::any_of(marks, [&](std::string_view mark) { return text.ends_with(mark); })) return true;
  if (sentence.hasAny(questionWords) || sentence.beginsWithAny(questionBeginnings)) return true;
  return isTrashing(plan) && sentence.hasAny(lookingWords);
}

// Whether a file or folder is named as the disk has it: "setup.dmg", "~/old/logs". The plan would take other files too.
bool namesPath(std::string_view text) {
  const auto isWordByte = [](char byte) {
    const auto lowered = lowerAscii(byte);
    return static_cast<unsigned char>(byte) >= 0x80U || (lowered >= 'a' && lowered <= 'z') ||
           (byte >= '0' && byte <= '9') || byte == '_';
  };
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    const bool isAfterWord = i > 0 && isWordByte(text[i - 1]);
    if (text[i] == '.' && isAfterWord && isWordByte(text[i + 1])) return true;
    if (text[i] == '/' && (isAfterWord || isWordByte(text[i + 1]))) return true;
  }
  return false;
}

// Has the words of the request count that the step follows.
void noteLeftAside(Understanding& result, const PromptReading& reading, const CleaningPlan& plan) {
  if (plan.steps.size() != 1) return;
  const bool organizes = plan.steps.front().action == PlannedAction::move;
  const bool takesShots = reading.wantsScreenshots;
  const bool takesInstallers = reading.wantsInstallers && !takesShots;
  for (auto& word : result.words) {
    switch (word.meaning) {
      case WordMeaning::installers:
        word.counts = word.counts && !takesShots;
        break;
      case WordMeaning::caches:
      case WordMeaning::logs:
        word.counts = word.counts && !takesShots && !takesInstallers && !organizes;
        break;
      case WordMeaning::folder:
        // Installers are looked for among the downloads, whatever folder is named.
        if (takesInstallers && !organizes) word.counts = word.counts && reading.folder == "~/Downloads";
        break;
      default:
        break;
    }
  }
}

// Whether two folders are named as one thing: "downloads and my desktop", "downloads, desktop". Not "downloads on my
// desktop", which is a folder of that name.
bool areJoined(std::string_view between) {
  constexpr auto others = std::to_array<Phrase>({"my", "the", "folder", "folders", "from", "in", "on", "both", "also"});
  bool isJoined = between.find(',') != std::string_view::npos;
  for (const auto& word : letterDigitRuns(lowercased(between))) {
    if (word == "and") {
      isJoined = true;
    } else if (std::ranges::find(others, word) == others.end()) {
      return false;
    }
  }
  return isJoined;
}

bool isKindOfFile(WordMeaning meaning) {
  return meaning == WordMeaning::screenshots || meaning == WordMeaning::installers || meaning == WordMeaning::caches ||
         meaning == WordMeaning::logs;
}

// A folder that is named beside a kind of files, as in "screenshots and downloads", is to go as well; the plan only
// looks in there.
void noteFoldersBeside(Understanding& result, std::string_view text) {
  ReadWord* last = nullptr;
  for (auto& word : result.words) {
    const bool isFolder = word.meaning == WordMeaning::folder;
    if (!isFolder && !isKindOfFile(word.meaning)) continue;
    if (last != nullptr && isFolder != (last->meaning == WordMeaning::folder) &&
        areJoined(text.substr(last->span.end(), word.span.start - last->span.end()))) {
      (isFolder ? word : *last).counts = false;
    }
    last = &word;
  }
}

// Has each of several folders count, where they are named as one thing. The plan is of the first then.
void joinFolders(Understanding& result, std::string_view text) {
  const ReadWord* last = nullptr;
  for (const auto& word : result.words) {
    if (word.meaning != WordMeaning::folder) continue;
    const bool isNext = last == nullptr || word.folder == last->folder ||
                        areJoined(text.substr(last->span.end(), word.span.start - last->span.end()));
    if (!isNext) return;
    last = &word;
  }
  for (auto& word : result.words) {
    if (word.meaning != WordMeaning::folder || word.folder == result.folder) continue;
    word.counts = true;
    if (std::ranges::find(result.otherFolders, word.folder) == result.otherFolders.end()) {
      result.otherFolders.emplace_back(word.folder);
    }
  }
}

bool isLeftAside(const Understanding& result) {
  return std::ranges::any_of(result.words,
                             [](const ReadWord& word) { return word.meaning != WordMeaning::none && !word.counts; });
}

void explainFillers(RequestSentence& sentence, const PromptReading& reading, const CleaningPlan& plan) {
  sentence.explainAll(fillers);
  sentence.explainAll(fillerPhrases);
  sentence.explainAll(comparisons);
  if (isTrashing(plan)) {
    sentence.explainAll(otherRemovalWords);
    if (sentence.beginsWithAny(emptyingPhrases)) sentence.explain(std::size_t{0});
    if (sentence.hasAny(toTrashPhrases)) {
      sentence.explainAll(toTrashPhrases);
      sentence.explainAll(carryingVerbs);
    }
  } else {
    sentence.explainAll(lookingWords);
  }
  for (const auto& row : nounRows) {
    if (!(reading.*row.wants)) continue;
    for (const auto word : row.words) {
      if (!word.empty()) sentence.explain(word);
    }
  }
}

// --- programs

bool isWordOfFolders(const RequestSentence& sentence, std::size_t token) {
  constexpr auto nouns =
      std::to_array<Phrase>({"folder", "folders", "directory", "directories", "dirs", "artifacts", "outputs"});
  return token < sentence.tokens().size() && std::ranges::find(nouns, sentence.tokens()[token].text) != nouns.end();
}

// Names that are words of every day mean folders only where the request says so.
bool isMeant(const RequestSentence& sentence, const ProgramName& name, std::size_t after) {
  constexpr auto everyday = std::to_array<Phrase>({"target", "build", "dist", "out"});
  return !name.program.isBuild || std::ranges::find(everyday, name.phrase) == everyday.end() ||
         isWordOfFolders(sentence, after);
}

// Whether all that is named are places themselves, which no program is taken for.
bool findPrograms(RequestSentence& sentence, std::span<const ProgramName> programs, Understanding& result) {
  std::vector<bool> arePlaces;  // of the programs found
  std::vector<const ProgramName*> longestFirst;
  for (const auto& name : programs) {
    if (!name.phrase.empty()) longestFirst.push_back(&name);
  }
  std::ranges::stable_sort(longestFirst, std::ranges::greater{},
                           [](const ProgramName* name) { return name->phrase.size(); });
  std::vector<std::size_t> takenBy(sentence.tokens().size());  // length of the name, in words
  for (const auto* name : longestFirst) {
    const auto count = static_cast<std::size_t>(std::ranges::count(name->phrase, ' ')) + 1;
    for (auto at = sentence.find(name->phrase); at; at = sentence.find(name->phrase, *at + 1)) {
      const auto named = std::span(sentence.tokens()).subspan(*at, count);
      const bool isNew = !std::ranges::all_of(named, &RequestSentence::Token::isKnown);
      // Several programs may have the same name.
      if (takenBy[*at] != (isNew ? 0 : count) || !isMeant(sentence, *name, *at + count)) continue;
      for (auto i = *at; i < *at + count; ++i) {
        takenBy[i] = count;
        sentence.explain(i);
        auto& word = result.words[sentence.tokens()[i].word];
        if (word.meaning == WordMeaning::none) word.meaning = WordMeaning::program;
      }
      if (name->program.isBuild && isWordOfFolders(sentence, *at + count)) sentence.explain(*at + count);
      const auto known = std::ranges::find(result.programs, name->program) - result.programs.begin();
      if (static_cast<std::size_t>(known) == result.programs.size()) {
        result.programs.push_back(name->program);
        arePlaces.push_back(false);
      }
      if (name->isPlace || name->program.isBuild) arePlaces[static_cast<std::size_t>(known)] = true;
    }
  }
  return std::ranges::find(arePlaces, false) == arePlaces.end();
}

void markFillers(const RequestSentence& sentence, std::vector<ReadWord>& words) {
  for (const auto& token : sentence.tokens()) {
    auto& word = words[token.word];
    if (word.meaning == WordMeaning::none && token.isKnown) word.meaning = WordMeaning::filler;
  }
}

// --- the verdict

// Whether every age and size is said to be a least one: "older than a week", "over 2 gb", "30 days old".
bool areComparisonsSaid(const RequestSentence& sentence, const Understanding& result) {
  constexpr auto before = std::to_array<Phrase>({"than", "over", "above", "least"});
  constexpr auto after = std::to_array<Phrase>({"old", "older", "plus"});
  constexpr auto more = std::to_array<Phrase>({"more", "larger", "bigger", "older"});
  constexpr auto alone = std::to_array<Phrase>({"old", "older", "stale", "huge", "large", "big"});
  const auto& tokens = sentence.tokens();
  const auto isOneOf = [&](std::size_t at, std::span<const Phrase> words) {
    return at < tokens.size() && std::ranges::find(words, tokens[at].text) != words.end();
  };
  for (std::size_t first = 0; first < tokens.size();) {
    auto end = first + 1;
    while (end < tokens.size() && tokens[end].word == tokens[first].word) ++end;
    const auto meaning = result.words[tokens[first].word].meaning;
    const bool isQuantity = meaning == WordMeaning::age || meaning == WordMeaning::size;
    if (isQuantity && !isOneOf(first, alone)) {
      const bool isSaid = (first > 0 && isOneOf(first - 1, before)) || isOneOf(end, after) ||
                          ((isOneOf(end, std::array<Phrase, 2>{"or", "and"})) && isOneOf(end + 1, more));
      if (!isSaid) return false;
    }
    first = end;
  }
  return true;
}

bool saysRemoval(const RequestSentence& sentence, const PromptReading& reading) {
  return reading.wantsRemoval || sentence.hasAny(otherRemovalWords) || sentence.hasAny(toTrashPhrases) ||
         sentence.beginsWithAny(emptyingPhrases);
}

bool takesWholeFolder(const RequestSentence& sentence, const PromptReading& reading, const CleaningPlan& plan) {
  constexpr auto verbs = std::to_array<Phrase>({"delete", "remove", "trash", "purge"});
  const bool isQuery =
      !reading.wantsScreenshots && !reading.wantsInstallers && !reading.wantsCaches && !reading.wantsLogs;
  return isTrashing(plan) && isQuery && !reading.ageDays && !reading.sizeBytes &&
         (sentence.hasAny(verbs) || sentence.hasAny(otherRemovalWords));
}

bool namesNothing(const PromptReading& reading) {
  return !reading.folder && !reading.ageDays && !reading.sizeBytes && !reading.wantsScreenshots &&
         !reading.wantsInstallers && !reading.wantsCaches && !reading.wantsLogs;
}

Doubt doubtAboutPrograms(const RequestSentence& sentence, const PromptReading& reading, const Understanding& result,
                         bool areAllPlaces) {
  if (!sentence.isAllKnown()) return Doubt::unknownWord;
  if (reading.wantsScreenshots || reading.wantsInstallers || reading.wantsOrganizing || reading.sizeBytes ||
      !reading.folder.value_or("~/Library").starts_with("~/Library")) {
    return Doubt::leftAside;
  }
  if (!areComparisonsSaid(sentence, result)) return Doubt::comparison;
  if (!saysRemoval(sentence, reading)) return Doubt::noVerb;
  constexpr auto gentle = std::to_array<Phrase>({"clean", "clear", "free", "empty"});
  const bool isClear = reading.wantsCaches || reading.wantsLogs || areAllPlaces || sentence.hasAny(gentle);
  return isClear ? Doubt::none : Doubt::program;
}

Doubt doubtAboutTables(const RequestSentence& sentence, const PromptReading& reading, const Understanding& result,
                       const CleaningPlan& plan) {
  if (namesNothing(reading)) return Doubt::nothing;
  if (!sentence.isAllKnown()) return isLeftAside(result) ? Doubt::leftAside : Doubt::unknownWord;
  if (!areComparisonsSaid(sentence, result)) return Doubt::comparison;
  if (takesWholeFolder(sentence, reading, plan)) return Doubt::noCriterion;
  if (isTrashing(plan) && !saysRemoval(sentence, reading)) return Doubt::noVerb;
  return Doubt::none;
}

}  // namespace

std::string phraseOf(std::string_view text) {
  std::string phrase;
  for (const auto& word : letterDigitRuns(lowercased(text))) {
    if (!phrase.empty()) phrase += ' ';
    phrase += word;
  }
  return phrase;
}

Understanding understand(const RequestText& request, const PromptReading& reading, const CleaningPlan& plan,
                         PlanMaker maker, std::span<const ProgramName> programs) {
  Understanding result{.words = reading.words, .ageDays = reading.ageDays, .sizeBytes = reading.sizeBytes};
  if (reading.folder) result.folder = *reading.folder;
  if (maker == PlanMaker::tables) {
    noteLeftAside(result, reading, plan);
    // Installers are looked for among the downloads alone; caches and logs have folders of their own.
    const bool isOfAnyFolder = !reading.wantsCaches && !reading.wantsLogs &&
                               (!reading.wantsInstallers || reading.wantsScreenshots || isMoving(plan));
    if (isOfAnyFolder) joinFolders(result, request.words);
    noteFoldersBeside(result, request.words);
  }
  RequestSentence sentence(request.words, result.words);
  const auto doubted = [&](Doubt doubt) {
    result.doubt = doubt;
    return result;
  };

  const bool isNegated = sentence.hasAny(negations);
  if (!isNegated) result.room = roomFor(sentence, reading);
  if (!isNegated && !result.room && maker == PlanMaker::tables) result.room = cleanupFor(sentence, reading);
  explainFillers(sentence, reading, plan);
  if (isNegated) {
    sentence.explainAll(negations);
    markFillers(sentence, result.words);
    return doubted(Doubt::negation);
  }
  if (result.room) {
    // The section has a use for the words that are left.
    for (std::size_t token = 0; token < sentence.tokens().size(); ++token) sentence.explain(token);
    markFillers(sentence, result.words);
    return doubted(Doubt::otherRoom);
  }
  const bool isQuestion = asks(sentence, request.typed, plan);
  if (maker == PlanMaker::model) return doubted(isQuestion ? Doubt::question : Doubt::none);
  const bool areAllPlaces = findPrograms(sentence, programs, result);
  if (isQuestion) sentence.explainAll(questionWords);
  markFillers(sentence, result.words);
  if (isQuestion) return doubted(Doubt::question);
  if (namesPath(request.words)) return doubted(Doubt::path);
  if (result.programs.empty()) return doubted(doubtAboutTables(sentence, reading, result, plan));
  const auto doubt = doubtAboutPrograms(sentence, reading, result, areAllPlaces);
  if (doubt == Doubt::program) result.room = RoomRequest{.room = Room::apps, .name = result.programs.front().name};
  return doubted(doubt);
}

}  // namespace orvane
