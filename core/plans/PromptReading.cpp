#include "core/plans/PromptReading.h"

#include "core/base/text/AsciiText.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/plans/QuantityPattern.h"

#include <algorithm>
#include <array>
#include <set>
#include <span>
#include <string>

namespace orvane {
namespace {

using Words = std::span<const std::string_view>;

constexpr std::int64_t mebibyte = 1024 * 1024;
constexpr std::int64_t gibibyte = 1024 * mebibyte;
constexpr std::int64_t defaultAgeDays = 30;
constexpr std::int64_t bareMegabyteSize = 100 * mebibyte;
constexpr std::int64_t bigFileSize = 500 * mebibyte;

constexpr std::array<std::string_view, 2> downloadsWords{"download", "downloads"};
constexpr std::array<std::string_view, 1> desktopWords{"desktop"};
constexpr std::array<std::string_view, 2> documentsWords{"document", "documents"};
constexpr std::array<std::string_view, 4> picturesWords{"picture", "pictures", "photo", "photos"};
constexpr std::array<std::string_view, 2> cacheWords{"cache", "caches"};
constexpr std::array<std::string_view, 2> logWords{"log", "logs"};
constexpr std::array<std::string_view, 3> oldWords{"old", "older", "stale"};
constexpr std::array<std::string_view, 3> gigabyteWords{"gb", "gigabyte", "gigabytes"};
constexpr std::array<std::string_view, 3> megabyteWords{"mb", "megabyte", "megabytes"};
constexpr std::array<std::string_view, 3> bigWords{"huge", "large", "big"};
constexpr std::array<std::string_view, 2> screenshotWords{"screenshot", "screenshots"};
constexpr std::string_view screenshotPhrase = "screen shot";
constexpr std::array<std::string_view, 6> installerWords{"installer", "installers", "dmg", "dmgs", "pkg", "pkgs"};
constexpr std::array<std::string_view, 8> organizeWords{"organize", "organise",   "sort",       "tidy",
                                                        "arrange",  "categorize", "categorise", "group"};
constexpr std::array<std::string_view, 7> removalWords{"delete", "trash", "remove", "clean", "clear", "purge", "free"};

struct FolderAlias {
  Words words;
  std::string_view folder;
};
constexpr std::array folderAliases{
    FolderAlias{downloadsWords, "~/Downloads"},  FolderAlias{desktopWords, "~/Desktop"},
    FolderAlias{documentsWords, "~/Documents"},  FolderAlias{picturesWords, "~/Pictures"},
    FolderAlias{cacheWords, "~/Library/Caches"}, FolderAlias{logWords, "~/Library/Logs"},
};

constexpr std::array<std::string_view, 4> ageUnits{"day", "week", "month", "year"};
struct DaysPerUnit {
  std::string_view unit;
  std::int64_t days;
};
constexpr std::array daysPerUnit{DaysPerUnit{"day", 1}, DaysPerUnit{"week", 7}, DaysPerUnit{"month", 30},
                                 DaysPerUnit{"year", 365}};

constexpr std::array<std::string_view, 6> sizeUnits{"gb", "gig", "gigabyte", "mb", "meg", "megabyte"};

// A request in lower case, with the way back to the text as it was given: some letters change their length.
class LoweredText {
 public:
  explicit LoweredText(std::string_view given) : m_text(lowercased(given)) {
    if (m_text.size() == given.size() && isAscii(given)) return;
    for (std::size_t start = 0; start < given.size();) {
      auto end = start + 1;
      while (end < given.size() && (static_cast<unsigned char>(given[end]) & 0xC0U) == 0x80U) ++end;
      const TextSpan character{start, end - start};
      m_characters.resize(m_characters.size() + lowercased(character.in(given)).size(), character);
      start = end;
    }
    m_characters.resize(m_text.size(), {given.size(), 0});
  }
  [[nodiscard]] const std::string& text() const noexcept { return m_text; }
  [[nodiscard]] TextSpan given(const TextSpan& span) const {
    if (m_characters.empty()) return span;
    const auto start = m_characters[span.start].start;
    return {start, m_characters[span.end() - 1].end() - start};
  }

 private:
  std::string m_text;
  std::vector<TextSpan> m_characters;  // of the given text, for each byte; empty where nothing moved
};

// The tokens of a request: whole words, so that "login" holds no "log".
class Tokens {
 public:
  explicit Tokens(std::string_view text) {
    std::size_t from = 0;
    for (const auto& token : letterDigitRuns(text)) {
      m_spans.push_back({text.find(token, from), token.size()});
      from = m_spans.back().end();
      m_tokens.insert(m_spans.back().in(text));
    }
  }
  [[nodiscard]] bool has(Words words) const {
    return std::ranges::any_of(words, [&](std::string_view word) { return m_tokens.contains(word); });
  }
  [[nodiscard]] const std::vector<TextSpan>& spans() const noexcept { return m_spans; }

 private:
  std::vector<TextSpan> m_spans;
  std::set<std::string_view> m_tokens;
};

std::optional<std::string_view> folderOf(const Tokens& tokens) {
  for (const auto& alias : folderAliases) {
    if (tokens.has(alias.words)) return alias.folder;
  }
  return std::nullopt;
}

bool isOneOf(std::string_view word, Words words) {
  return std::ranges::find(words, word) != words.end();
}

// The parts of a text that count as one word.
struct Phrases {
  std::optional<Quantity> age;
  std::optional<Quantity> size;
  std::optional<TextSpan> screenshots;
};

Phrases phrasesIn(std::string_view text) {
  static const QuantityPattern ages(ageUnits);
  static const QuantityPattern sizes(sizeUnits);
  Phrases phrases{ages.extractQuantity(text), sizes.extractQuantity(text), std::nullopt};
  if (const auto at = text.find(screenshotPhrase); at != std::string_view::npos) {
    phrases.screenshots = {at, screenshotPhrase.size()};
  }
  return phrases;
}

std::optional<std::int64_t> ageOf(const std::optional<Quantity>& quantity, const Tokens& tokens) {
  if (quantity) {
    const auto* row = std::ranges::find(daysPerUnit, quantity->unit, &DaysPerUnit::unit);
    return checkedMultiply(quantity->number, row != daysPerUnit.end() ? row->days : 1);
  }
  if (tokens.has(oldWords)) return defaultAgeDays;
  return std::nullopt;
}

std::optional<std::int64_t> sizeOf(const std::optional<Quantity>& quantity, const Tokens& tokens) {
  if (quantity) return checkedMultiply(quantity->number, quantity->unit.starts_with('g') ? gibibyte : mebibyte);
  if (tokens.has(gigabyteWords)) return gibibyte;
  if (tokens.has(megabyteWords)) return bareMegabyteSize;
  if (tokens.has(bigWords)) return bigFileSize;
  return std::nullopt;
}

// A single word, by the tables and by what decided.
ReadWord readWord(std::string_view word, const PromptReading& reading, const Phrases& phrases) {
  struct Row {
    Words words;
    WordMeaning meaning;
  };
  constexpr std::array rows{
      Row{screenshotWords, WordMeaning::screenshots},
      Row{installerWords, WordMeaning::installers},
      Row{cacheWords, WordMeaning::caches},
      Row{logWords, WordMeaning::logs},
      Row{organizeWords, WordMeaning::organizing},
      Row{removalWords, WordMeaning::removal},
      Row{oldWords, WordMeaning::age},
      Row{bigWords, WordMeaning::size},
  };
  const auto* const row = std::ranges::find_if(rows, [&](const Row& table) { return isOneOf(word, table.words); });
  if (row != rows.end()) return {{}, row->meaning};
  const bool isGigabyte = isOneOf(word, gigabyteWords);
  if (isGigabyte || isOneOf(word, megabyteWords)) {
    const bool decides = !phrases.size && reading.sizeBytes == (isGigabyte ? gibibyte : bareMegabyteSize);
    return {{}, WordMeaning::size, decides};
  }
  for (const auto& alias : folderAliases) {
    if (isOneOf(word, alias.words)) return {{}, WordMeaning::folder, reading.folder == alias.folder, alias.folder};
  }
  return {};
}

std::vector<ReadWord> readWords(const LoweredText& lowered, const Tokens& tokens, const PromptReading& reading,
                                const Phrases& phrases) {
  const std::string_view text = lowered.text();
  std::vector<ReadWord> words;
  const auto phraseOf = [&](const TextSpan& span) -> std::optional<ReadWord> {
    if (phrases.age && span.touches(phrases.age->span)) return ReadWord{phrases.age->span, WordMeaning::age};
    if (phrases.size && span.touches(phrases.size->span)) return ReadWord{phrases.size->span, WordMeaning::size};
    if (phrases.screenshots && span.touches(*phrases.screenshots)) {
      return ReadWord{*phrases.screenshots, WordMeaning::screenshots};
    }
    return std::nullopt;
  };
  std::optional<TextSpan> last;  // phrase
  for (const auto& span : tokens.spans()) {
    if (const auto phrase = phraseOf(span)) {
      if (last == phrase->span) {
        // A phrase may end within a word: "screen shots".
        auto& whole = words.back().span;
        whole.length = lowered.given(span).end() - whole.start;
        continue;
      }
      last = phrase->span;
      words.push_back(*phrase);
    } else {
      words.push_back(readWord(span.in(text), reading, phrases));
    }
    words.back().span = lowered.given(span);
  }
  return words;
}

}  // namespace

PromptReading PromptReading::of(std::string_view prompt) {
  const LoweredText lowered(prompt);
  const Tokens tokens(lowered.text());
  const auto phrases = phrasesIn(lowered.text());
  PromptReading reading;
  reading.folder = folderOf(tokens);
  reading.ageDays = ageOf(phrases.age, tokens);
  reading.sizeBytes = sizeOf(phrases.size, tokens);
  reading.wantsScreenshots = tokens.has(screenshotWords) || phrases.screenshots.has_value();
  reading.wantsInstallers = tokens.has(installerWords);
  reading.wantsCaches = tokens.has(cacheWords);
  reading.wantsLogs = tokens.has(logWords);
  reading.wantsOrganizing = tokens.has(organizeWords);
  reading.wantsRemoval = tokens.has(removalWords);
  reading.words = readWords(lowered, tokens, reading, phrases);
  return reading;
}

}  // namespace orvane
