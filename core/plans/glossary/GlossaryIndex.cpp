#include "core/plans/glossary/GlossaryIndex.h"

#include "core/plans/glossary/HanNumber.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>

namespace orvane {
namespace {

struct LanguageGlossary {
  AppLanguage language;
  const GlossaryRows* rows;
};
constexpr std::array languageGlossaries{
    LanguageGlossary{AppLanguage::fr, &frenchGlossary},
    LanguageGlossary{AppLanguage::de, &germanGlossary},
    LanguageGlossary{AppLanguage::ja, &japaneseGlossary},
    LanguageGlossary{AppLanguage::ko, &koreanGlossary},
    LanguageGlossary{AppLanguage::zhHans, &simplifiedChineseGlossary},
    LanguageGlossary{AppLanguage::zhHant, &traditionalChineseGlossary},
    LanguageGlossary{AppLanguage::es, &spanishGlossary},
};

constexpr std::array<std::string_view, 6> unitWords{"day", "week", "month", "year", "gb", "mb"};

// Calls `use` with each piece between separators.
template <typename Use>
void forEachPiece(std::string_view text, char separator, const Use& use) {
  while (!text.empty()) {
    const auto end = std::min(text.find(separator), text.size());
    if (end > 0) use(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

// As people write without the letter: "groesser".
std::string withoutUmlauts(std::string_view text) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 3> letters{
      {{"ä", "ae"}, {"ö", "oe"}, {"ü", "ue"}}};
  std::string result(text);
  for (const auto& [letter, plain] : letters) {
    for (auto at = result.find(letter); at != std::string::npos; at = result.find(letter, at + plain.size())) {
      result.replace(at, letter.size(), plain);
    }
  }
  return result;
}

}  // namespace

bool isUnitWord(std::string_view english) {
  return std::ranges::find(unitWords, english) != unitWords.end();
}

bool isNumberText(std::string_view english) {
  return !english.empty() && std::ranges::all_of(english, [](char c) { return c >= '0' && c <= '9'; });
}

GlossaryIndex::GlossaryIndex(AppLanguage language, GlossaryRows rows)
    : m_hasCompounds(language == AppLanguage::de),
      m_hasHanNumbers(language == AppLanguage::ja || language == AppLanguage::zhHans ||
                      language == AppLanguage::zhHant) {
  for (const auto& row : rows) {
    forEachPiece(row.typed, '|', [&](std::string_view alternative) {
      add(alternative, row.english);
      if (!m_hasCompounds) return;
      if (const auto plain = withoutUmlauts(alternative); plain != alternative) add(plain, row.english);
    });
  }
  const auto longestFirst = [](std::vector<Entry>& entries) {
    std::ranges::stable_sort(entries, std::ranges::greater{}, [](const Entry& entry) { return entry.parts.size(); });
  };
  for (auto& [word, entries] : m_entries) longestFirst(entries);
  longestFirst(m_stems);
}

const GlossaryIndex* GlossaryIndex::of(AppLanguage language) {
  static const auto indexes = [] {
    std::map<AppLanguage, GlossaryIndex> result;
    for (const auto& [which, rows] : languageGlossaries) result.try_emplace(which, which, *rows);
    return result;
  }();
  const auto found = indexes.find(language);
  return found == indexes.end() ? nullptr : &found->second;
}

void GlossaryIndex::add(std::string_view alternative, std::string_view english) {
  Entry entry{{}, english};
  forEachPiece(alternative, ' ', [&](std::string_view word) {
    for (auto& folded : foldedWords(word)) entry.parts.push_back({std::move(folded.text), false});
    if (word.ends_with('*') && !entry.parts.empty()) entry.parts.back().isStem = true;
  });
  if (!entry.parts.empty()) addEntry(std::move(entry));
}

void GlossaryIndex::addEntry(Entry entry) {
  if (entry.parts.front().isStem) {
    m_stems.push_back(std::move(entry));
  } else {
    auto key = entry.parts.front().text;
    m_entries[std::move(key)].push_back(std::move(entry));
  }
}

bool GlossaryIndex::fits(const Entry& entry, std::span<const FoldedWord> words) {
  if (entry.parts.size() > words.size()) return false;
  return std::ranges::equal(entry.parts, words.first(entry.parts.size()),
                            [](const Part& part, const FoldedWord& word) { return part.matches(word.text); });
}

bool GlossaryIndex::isUnitAt(std::span<const FoldedWord> words) const {
  if (words.empty()) return false;
  const auto found = m_entries.find(words.front().text);
  if (found == m_entries.end()) return false;
  const auto longest = std::ranges::find_if(
      found->second, [&](const Entry& entry) { return !isNumberText(entry.english) && fits(entry, words); });
  return longest != found->second.end() && isUnitWord(longest->english);
}

bool GlossaryIndex::isNumberAt(std::span<const FoldedWord> words) const {
  const auto match = longestAt(words);
  // As in "quinze jours", which is a row of its own.
  return match && (match->isLoneNumber || isNumberText(match->english.substr(0, 1)));
}

std::optional<GlossaryIndex::Match> GlossaryIndex::matchAt(std::span<const FoldedWord> words) const {
  auto match = longestAt(words);
  if (!match || !match->isLoneNumber) return match;
  auto rest = words.subspan(match->length);
  if (isNumberAt(rest)) return std::nullopt;
  // As in "cuarenta y cinco".
  const auto link = longestAt(rest);
  const bool isFiller = link && link->length == 1 && (link->english.empty() || link->english == "and");
  const bool isLinked = isFiller && isNumberAt(rest.subspan(1));
  return isLinked ? std::nullopt : match;
}

std::optional<GlossaryIndex::Match> GlossaryIndex::longestAt(std::span<const FoldedWord> words) const {
  enum class Rank : std::uint8_t { loneNumber, stem, exact, number };
  std::optional<Match> best;
  auto bestRank = Rank::loneNumber;
  const auto take = [&](std::size_t length, std::string_view english, Rank rank) {
    if (isNumberText(english)) rank = isUnitAt(words.subspan(length)) ? Rank::number : Rank::loneNumber;
    if (best && std::pair(length, rank) <= std::pair(best->length, bestRank)) return;
    const bool isLone = rank == Rank::loneNumber;
    best = Match{length, isLone ? std::string() : std::string(english), isLone};
    bestRank = rank;
  };
  const auto consider = [&](const Entry& entry, Rank rank) {
    if (fits(entry, words)) take(entry.parts.size(), entry.english, rank);
  };
  if (words.empty()) return best;
  const auto& first = words.front().text;
  if (const auto found = m_entries.find(first); found != m_entries.end()) {
    for (const auto& entry : found->second) consider(entry, Rank::exact);
  }
  for (const auto& entry : m_stems) consider(entry, Rank::stem);
  if (m_hasHanNumbers) {
    const auto number = HanNumber::at(words);
    if (number.value) take(number.length, std::to_string(*number.value), Rank::number);
  }
  if (!best && m_hasCompounds && words.front().kind == FoldedWord::Kind::letters) return compoundAt(first);
  return best;
}

const GlossaryIndex::Entry* GlossaryIndex::wordEntry(std::string_view word) const {
  const auto isWord = [&](const Entry& entry) { return entry.parts.size() == 1 && entry.parts.front().matches(word); };
  if (const auto found = m_entries.find(word); found != m_entries.end()) {
    const auto at = std::ranges::find_if(found->second, isWord);
    if (at != found->second.end()) return &*at;
  }
  const auto at = std::ranges::find_if(m_stems, isWord);
  return at == m_stems.end() ? nullptr : &*at;
}

// Two known words in one, as in "Dokumenteordner": the first one counts, the second says of what kind it is.
std::optional<GlossaryIndex::Match> GlossaryIndex::compoundAt(std::string_view word) const {
  constexpr std::size_t minPartLength = 3;
  constexpr std::array<std::string_view, 5> links{"", "s", "n", "en", "es"};
  for (auto length = word.size(); length-- > minPartLength;) {
    const auto found = m_entries.find(word.substr(0, length));
    if (found == m_entries.end()) continue;
    const auto* const head = wordEntry(word.substr(0, length));
    if (head == nullptr || head->english.empty() || isNumberText(head->english)) continue;
    for (const auto link : links) {
      const auto rest = word.substr(length);
      if (!rest.starts_with(link) || rest.size() < link.size() + minPartLength) continue;
      const auto* const tail = wordEntry(rest.substr(link.size()));
      if (tail != nullptr && !tail->english.empty()) return Match{1, std::string(head->english)};
    }
  }
  return std::nullopt;
}

}  // namespace orvane
