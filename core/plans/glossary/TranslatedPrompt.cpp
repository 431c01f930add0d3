#include "core/plans/glossary/TranslatedPrompt.h"

#include "core/plans/glossary/GlossaryIndex.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>

namespace orvane {
namespace {

// No request in plain words is longer.
constexpr std::size_t maxPromptBytes = 2000;

using Words = std::span<const FoldedWord>;

constexpr std::array<std::string_view, 10> questionWords{"don't", "don't delete", "except", "what can i", "what",
                                                         "which", "how",          "where",  "should i",   "never"};
constexpr std::array<std::string_view, 8> roomVerbs{"find",  "show",    "list", "uninstall",
                                                    "empty", "restore", "undo", "schedule"};
// With one of these, tidying up means to clean.
constexpr std::array<std::string_view, 8> cleanableWords{"screenshots", "installers", "caches", "logs",
                                                         "large",       "old",        "older",  "large files"};

// They stand after an age or a size in some languages.
constexpr std::array<std::string_view, 3> comparisonsAfter{"over", "at least", "large"};

constexpr bool isIn(std::span<const std::string_view> words, std::string_view word) {
  return std::ranges::find(words, word) != words.end();
}

struct Piece {
  // The order in the English text.
  enum class Role : std::uint8_t { question, verb, rest, end };
  std::string english;
  TextSpan typed;
  Role role = Role::rest;
  bool joinsPrevious = false;  // without a space: a part of one name
  bool standsApart = false;    // a unit that does not belong to the number before it
};

Piece::Role roleOf(std::string_view english) {
  if (isIn(questionWords, english)) return Piece::Role::question;
  if (isIn(roomVerbs, english)) return Piece::Role::verb;
  return english == "?" ? Piece::Role::end : Piece::Role::rest;
}

bool isKnownEnglish(std::string_view word) {
  static const auto known = [] {
    std::set<std::string, std::less<>> result;
    for (auto& folded : foldedWords(englishWords)) result.insert(std::move(folded.text));
    return result;
  }();
  return known.contains(word);
}

std::size_t englishCount(Words words) {
  return static_cast<std::size_t>(
      std::ranges::count_if(words, [](const FoldedWord& word) { return isKnownEnglish(word.text); }));
}

// How many words a glossary knows; none where it knows only words without meaning.
std::size_t knownCount(Words words, const GlossaryIndex& index) {
  std::size_t count = 0;
  bool hasMeaning = false;
  for (std::size_t i = 0; i < words.size();) {
    const auto match = words[i].kind == FoldedWord::Kind::questionMark ? std::nullopt : index.matchAt(words.subspan(i));
    if (match) {
      count += match->length;
      hasMeaning = hasMeaning || !match->english.empty();
    }
    i += match ? match->length : 1;
  }
  return hasMeaning ? count : 0;
}

AppLanguage languageOf(Words words, AppLanguage window) {
  auto best = AppLanguage::en;
  auto bestCount = englishCount(words);
  const auto consider = [&](AppLanguage language) {
    const auto* const index = GlossaryIndex::of(language);
    if (index == nullptr) return;
    const auto count = knownCount(words, *index);
    if (count <= bestCount) return;
    best = language;
    bestCount = count;
  };
  consider(window);
  for (const auto language : allAppLanguages) consider(language);
  return best;
}

class Translation {
 public:
  Translation(std::string_view prompt, Words words, const GlossaryIndex& index)
      : m_prompt(prompt), m_words(words), m_index(index) {
    for (std::size_t i = 0; i < words.size();) i += take(i);
    settleMeanings();
    settleComparisons();
    std::ranges::stable_sort(m_pieces, {}, &Piece::role);
  }
  [[nodiscard]] const std::vector<Piece>& pieces() const noexcept { return m_pieces; }

 private:
  // The number of words taken.
  std::size_t take(std::size_t at) {
    const auto& word = m_words[at];
    if (const auto length = takeDecimal(at)) return length;
    if (const auto match = m_index.matchAt(m_words.subspan(at))) {
      const bool isLoneUnit = isUnitWord(match->english) && !followsNumber(at);
      // A single sign for a day or a year is a part of many other words.
      if (match->english.empty() || (isLoneUnit && word.kind == FoldedWord::Kind::ideograph)) return match->length;
      const bool isCounted = isNumberText(match->english) || isUnitWord(match->english);
      if (!isCounted && says(match->english)) return match->length;
      add(at, match->length, match->english);
      m_pieces.back().standsApart = isLoneUnit;
      return match->length;
    }
    const bool isNumber = word.kind == FoldedWord::Kind::digits || word.kind == FoldedWord::Kind::questionMark;
    add(at, 1, isNumber ? std::string_view(word.text) : word.span.in(m_prompt));
    m_pieces.back().joinsPrevious = isPartOfName(at);
    m_lastKept = at;
    return 1;
  }

  // "1,5 Go" and "1.024 MB", which the parser would read as 5 and 24: in whole megabytes.
  std::size_t takeDecimal(std::size_t at) {
    constexpr std::int64_t mebibytes = 1024;
    constexpr std::size_t maxDigits = 4;
    if (m_words.size() < at + 3 || m_words[at].kind != FoldedWord::Kind::digits) return 0;
    const auto& fraction = m_words[at + 1];
    const auto gap = gapBefore(at + 1);
    if (fraction.kind != FoldedWord::Kind::digits || (gap != "," && gap != ".")) return 0;
    const auto unit = m_index.matchAt(m_words.subspan(at + 2));
    if (!unit || (unit->english != "gb" && unit->english != "mb")) return 0;
    if (m_words[at].text.size() > maxDigits || fraction.text.size() > maxDigits) return 0;
    constexpr std::size_t thousands = 3;
    const bool isGrouped = fraction.text.size() == thousands;
    const auto value = std::stod(m_words[at].text + (isGrouped ? "" : ".") + fraction.text);
    const auto whole = static_cast<std::int64_t>(unit->english == "gb" ? value * mebibytes : value);
    add(at, 2 + unit->length, fmt::format("{} mb", whole));
    return 2 + unit->length;
  }

  [[nodiscard]] bool followsNumber(std::size_t at) const {
    return at > 0 && !m_pieces.empty() && isNumberText(m_pieces.back().english) &&
           m_pieces.back().typed.end() == m_words[at - 1].span.end();
  }

  // Whether the word before was kept as it is, with nothing but signs between, as in "node_modules".
  [[nodiscard]] bool isPartOfName(std::size_t at) const {
    constexpr std::string_view nameSigns = "_-.+/";
    if (at == 0 || m_lastKept != at - 1 || m_words[at].kind == FoldedWord::Kind::questionMark) return false;
    const auto gap = gapBefore(at);
    if (gap.empty()) return m_words[at].kind == m_words[at - 1].kind;
    return gap.size() == 1 && nameSigns.find(gap.front()) != std::string_view::npos;
  }

  [[nodiscard]] std::string_view gapBefore(std::size_t at) const {
    const auto end = m_words[at - 1].span.end();
    return m_prompt.substr(end, m_words[at].span.start - end);
  }

  void add(std::size_t at, std::size_t length, std::string_view english) {
    const auto start = m_words[at].span.start;
    m_pieces.push_back({std::string(english), {start, m_words[at + length - 1].span.end() - start}});
  }

  [[nodiscard]] bool says(std::string_view english) const {
    return std::ranges::find(m_pieces, english, &Piece::english) != m_pieces.end();
  }

  void settleMeanings() {
    const bool isCleanable = std::ranges::any_of(
        m_pieces, [](const Piece& piece) { return isIn(cleanableWords, piece.english) || isUnitWord(piece.english); });
    const bool isTrash = says("trash");
    for (auto& piece : m_pieces) {
      if (piece.english == tidyOrClean) piece.english = isCleanable ? "clean" : "tidy";
      if (piece.english == emptyOrClear) piece.english = isTrash ? "empty" : "clear";
      piece.role = roleOf(piece.english);
    }
  }

  // How many pieces make an age or a size at a place: "2", "week", or "6 month" as one.
  [[nodiscard]] std::size_t quantityAt(std::size_t at) const {
    const auto& piece = m_pieces[at];
    if (isNumberText(piece.english)) {
      const bool isQuantity =
          at + 1 < m_pieces.size() && isUnitWord(m_pieces[at + 1].english) && !m_pieces[at + 1].standsApart;
      return isQuantity ? 2 : 0;
    }
    return piece.english.front() >= '0' && piece.english.front() <= '9' && piece.english.find(' ') != std::string::npos;
  }

  // Says before each age or size, as in English, that it is a least one.
  void settleComparisons() {
    std::vector<Piece> settled;
    for (std::size_t i = 0; i < m_pieces.size();) {
      const auto length = quantityAt(i);
      if (length == 0) {
        settled.push_back(std::move(m_pieces[i++]));
        continue;
      }
      const auto next = i + length;
      const auto unit = m_pieces[next - 1].english;
      if (!settled.empty()) settled.back().english = comparisonOf(settled.back().english, unit);
      const bool isSaidAfter = next < m_pieces.size() && isIn(comparisonsAfter, m_pieces[next].english);
      if (isSaidAfter) {
        m_pieces[next].english = comparisonOf(m_pieces[next].english, unit);
        settled.push_back(std::move(m_pieces[next]));
      }
      for (; i < next; ++i) settled.push_back(std::move(m_pieces[i]));
      if (isSaidAfter) ++i;
    }
    m_pieces = std::move(settled);
  }

  static std::string comparisonOf(const std::string& english, std::string_view unit) {
    const bool isSize = unit.ends_with('b');
    if (!isSize && (english == "old" || english == "older")) return "older than";
    return isSize && english == "large" ? "larger than" : english;
  }

  std::string_view m_prompt;
  Words m_words;
  const GlossaryIndex& m_index;
  std::vector<Piece> m_pieces;
  std::optional<std::size_t> m_lastKept;
};

}  // namespace

TranslatedPrompt TranslatedPrompt::of(std::string_view prompt, AppLanguage window) {
  TranslatedPrompt result;
  result.m_text = prompt;
  if (prompt.size() > maxPromptBytes) return result;
  const auto words = foldedWords(prompt);
  result.m_language = languageOf(words, window);
  const auto* const index = GlossaryIndex::of(result.m_language);
  if (index == nullptr) return result;
  result.m_text.clear();
  TextSpan last;
  bool endsWithNumber = false;
  const Translation translation(prompt, words, *index);
  for (const auto& piece : translation.pieces()) {
    if (piece.joinsPrevious) {
      result.m_text += prompt.substr(last.end(), piece.typed.start - last.end());
    } else if (!result.m_text.empty()) {
      result.m_text += piece.standsApart && endsWithNumber ? ", " : " ";
    }
    result.m_origins.push_back({{result.m_text.size(), piece.english.size()}, piece.typed});
    result.m_text += piece.english;
    last = piece.typed;
    endsWithNumber = isNumberText(piece.english);
  }
  return result;
}

TextSpan TranslatedPrompt::typed(const TextSpan& span) const {
  if (m_language == AppLanguage::en) return span;
  std::optional<TextSpan> result;
  for (const auto& origin : m_origins) {
    if (!origin.span.touches(span)) continue;
    if (!result) {
      result = origin.typed;
      continue;
    }
    const auto start = std::min(result->start, origin.typed.start);
    result = TextSpan{start, std::max(result->end(), origin.typed.end()) - start};
  }
  return result.value_or(TextSpan{});
}

}  // namespace orvane
