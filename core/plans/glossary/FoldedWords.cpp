#include "core/plans/glossary/FoldedWords.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <optional>

namespace orvane {
namespace {

constexpr UChar32 replacementCharacter = 0xFFFD;

constexpr bool isAccent(char32_t character) {
  constexpr char32_t first = 0x300;
  constexpr char32_t last = 0x36F;
  return character >= first && character <= last;
}

bool isIdeograph(char32_t character) {
  constexpr char32_t longVowel = 0x30FC;
  if (character == longVowel) return true;
  UErrorCode status = U_ZERO_ERROR;
  switch (::uscript_getScript(static_cast<UChar32>(character), &status)) {
    case USCRIPT_HAN:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_HANGUL:
      return true;
    default:
      return false;
  }
}

std::optional<FoldedWord::Kind> kindOf(char32_t character) {
  if (character == U'?') return FoldedWord::Kind::questionMark;
  const auto code = static_cast<UChar32>(character);
  if (::u_charDigitValue(code) >= 0) return FoldedWord::Kind::digits;
  if (isIdeograph(character)) return FoldedWord::Kind::ideograph;
  if (::u_isalnum(code)) return FoldedWord::Kind::letters;
  return std::nullopt;
}

// Splits a text as it is fed, one normalized piece after the other.
class WordSplitter {
 public:
  void add(const icu::UnicodeString& folded, const TextSpan& span) {
    for (std::int32_t i = 0; i < folded.length(); i = folded.moveIndex32(i, 1)) {
      const auto character = static_cast<char32_t>(folded.char32At(i));
      if (isAccent(character)) continue;
      add(character, span);
    }
  }
  std::vector<FoldedWord> words;

 private:
  void add(char32_t character, const TextSpan& span) {
    using Kind = FoldedWord::Kind;
    const auto kind = kindOf(character);
    if (!kind) {
      m_isOpen = false;
      return;
    }
    const bool isRun = kind == Kind::letters || kind == Kind::digits;
    // Digits in a word of letters belong to it ("mp3").
    const bool continues = m_isOpen && isRun && (words.back().kind == kind || words.back().kind == Kind::letters);
    if (!continues) words.push_back({{}, {span.start, 0}, *kind});
    auto& word = words.back();
    icu::UnicodeString(static_cast<UChar32>(character)).toUTF8String(word.text);
    word.span.length = span.end() - word.span.start;
    m_isOpen = isRun;
  }

  bool m_isOpen = false;
};

}  // namespace

std::vector<FoldedWord> foldedWords(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* const folding = icu::Normalizer2::getNFKCCasefoldInstance(status);
  const auto* const decomposition = icu::Normalizer2::getNFDInstance(status);
  if (U_FAILURE(status) != 0) return {};
  WordSplitter splitter;
  const auto length = static_cast<std::int32_t>(text.size());
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());  // as the macro wants them
  icu::UnicodeString piece;
  std::size_t start = 0;
  const auto flush = [&](std::size_t end) {
    if (piece.isEmpty()) return;
    auto folded = folding->normalize(piece, status);
    // Only letters with accents come apart: the voicing marks of kana and the letters of Hangul tell words apart.
    if (!folded.isEmpty() && !isIdeograph(static_cast<char32_t>(folded.char32At(0)))) {
      folded = decomposition->normalize(folded, status);
    }
    splitter.add(folded, {start, end - start});
    piece.remove();
  };
  for (std::int32_t at = 0; at < length;) {
    const auto before = static_cast<std::size_t>(at);
    UChar32 character = 0;
    U8_NEXT(bytes, at, length, character);
    if (character < 0 || folding->hasBoundaryBefore(character)) {
      flush(before);
      start = before;
    }
    piece.append(character < 0 ? replacementCharacter : character);
  }
  flush(text.size());
  return std::move(splitter.words);
}

}  // namespace orvane
