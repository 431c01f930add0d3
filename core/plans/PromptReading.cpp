#include "core/plans/PromptReading.h"

#include "core/base/text/UnicodeText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/plans/QuantityPattern.h"

#include <algorithm>
#include <array>
#include <functional>
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

// The tokens of a request: whole words, so that "login" holds no "log".
class Tokens {
 public:
  explicit Tokens(std::string_view text) {
    for (auto& token : letterDigitRuns(text)) m_tokens.insert(std::move(token));
  }
  [[nodiscard]] bool has(Words words) const {
    return std::ranges::any_of(words, [&](std::string_view word) { return m_tokens.contains(word); });
  }

 private:
  std::set<std::string, std::less<>> m_tokens;
};

std::optional<std::string_view> folderOf(const Tokens& tokens) {
  for (const auto& alias : folderAliases) {
    if (tokens.has(alias.words)) return alias.folder;
  }
  return std::nullopt;
}

std::optional<std::int64_t> ageOf(std::string_view text, const Tokens& tokens) {
  static const QuantityPattern pattern(ageUnits);
  if (const auto quantity = pattern.extractQuantity(text)) {
    const auto* row = std::ranges::find(daysPerUnit, quantity->unit, &DaysPerUnit::unit);
    return checkedMultiply(quantity->number, row != daysPerUnit.end() ? row->days : 1);
  }
  if (tokens.has(oldWords)) return defaultAgeDays;
  return std::nullopt;
}

std::optional<std::int64_t> sizeOf(std::string_view text, const Tokens& tokens) {
  static const QuantityPattern pattern(sizeUnits);
  if (const auto quantity = pattern.extractQuantity(text)) {
    return checkedMultiply(quantity->number, quantity->unit.starts_with('g') ? gibibyte : mebibyte);
  }
  if (tokens.has(gigabyteWords)) return gibibyte;
  if (tokens.has(megabyteWords)) return bareMegabyteSize;
  if (tokens.has(bigWords)) return bigFileSize;
  return std::nullopt;
}

}  // namespace

PromptReading PromptReading::of(std::string_view prompt) {
  const std::string text = lowercased(prompt);
  const Tokens tokens(text);
  PromptReading reading;
  reading.folder = folderOf(tokens);
  reading.ageDays = ageOf(text, tokens);
  reading.sizeBytes = sizeOf(text, tokens);
  reading.wantsScreenshots = tokens.has(screenshotWords) || text.find(screenshotPhrase) != std::string::npos;
  reading.wantsInstallers = tokens.has(installerWords);
  reading.wantsCaches = tokens.has(cacheWords);
  reading.wantsLogs = tokens.has(logWords);
  reading.wantsOrganizing = tokens.has(organizeWords);
  reading.wantsRemoval = tokens.has(removalWords);
  return reading;
}

}  // namespace orvane
