#include "core/base/text/UnicodeText.h"

#include "core/base/text/AsciiText.h"

#include <fmt/format.h>
#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <memory>

namespace orvane {
namespace {

icu::UnicodeString fromUtf8(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

std::string toUtf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

// One code point of a text with the bytes that it stands in; `code` is negative for a byte that is not UTF-8.
struct CodePoint {
  UChar32 code;
  std::string_view bytes;
};

// The code point at `index`, which moves behind it; negative, and one byte further, where the bytes are not UTF-8.
UChar32 decode(std::string_view text, int32_t& index) {
  const int32_t start = index;
  UChar32 code = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"  // inside the library's macro
  U8_NEXT(text.data(), index, static_cast<int32_t>(text.size()), code);
#pragma GCC diagnostic pop
  if (code < 0) index = start + 1;
  return code;
}

template <typename Visit>
void forEachCodePoint(std::string_view text, Visit visit) {
  const auto length = static_cast<int32_t>(text.size());
  int32_t index = 0;
  while (index < length) {
    const int32_t start = index;
    const UChar32 code = decode(text, index);
    visit(CodePoint{code, text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(index - start))});
  }
}

}  // namespace

bool isValidUtf8(std::string_view text) noexcept {
  bool valid = true;
  forEachCodePoint(text, [&](const CodePoint& point) { valid = valid && point.code >= 0; });
  return valid;
}

std::string lowercased(std::string_view text) {
  if (isAscii(text)) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), lowerAscii);
    return result;
  }
  return toUtf8(fromUtf8(text).toLower(icu::Locale::getRoot()));
}

std::string uppercased(std::string_view text) {
  return toUtf8(fromUtf8(text).toUpper(icu::Locale::getRoot()));
}

int compareForDisplay(std::string_view left, std::string_view right) {
  UErrorCode status = U_ZERO_ERROR;
  thread_local const std::unique_ptr<icu::Collator> collator = [&] {
    // The locale "C" would put all capitals first, whatever the strength.
    const auto& locale = icu::Locale::getDefault();
    const bool isPosix = std::string_view(locale.getVariant()) == "POSIX";
    std::unique_ptr<icu::Collator> made(
        icu::Collator::createInstance(isPosix ? icu::Locale::getRoot() : locale, status));
    if (made) made->setStrength(icu::Collator::SECONDARY);
    return made;
  }();
  if (!collator) return left.compare(right);
  return collator->compare(fromUtf8(left), fromUtf8(right), status);
}

std::int64_t perceivedCharacterCount(std::string_view text) {
  // Of the ASCII characters only a line's end in two of them makes one character.
  const auto isAlone = [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != '\r'; };
  if (std::all_of(text.begin(), text.end(), isAlone)) return static_cast<std::int64_t>(text.size());
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> iterator(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  const auto unicode = fromUtf8(text);
  if (U_FAILURE(status)) return unicode.countChar32();
  iterator->setText(unicode);
  std::int64_t count = 0;
  while (iterator->next() != icu::BreakIterator::DONE) ++count;
  return count;
}

std::string trimmed(std::string_view text) {
  std::size_t first = text.size();
  std::size_t last = 0;
  forEachCodePoint(text, [&](const CodePoint& point) {
    if (point.code >= 0 && u_isUWhiteSpace(point.code)) return;
    const auto start = static_cast<std::size_t>(point.bytes.data() - text.data());
    first = std::min(first, start);
    last = start + point.bytes.size();
  });
  return first < last ? std::string(text.substr(first, last - first)) : std::string();
}

std::vector<std::string> letterDigitRuns(std::string_view text) {
  std::vector<std::string> runs;
  bool inRun = false;
  forEachCodePoint(text, [&](const CodePoint& point) {
    const bool belongs = point.code >= 0 && u_isalnum(point.code);
    if (belongs && !inRun) runs.emplace_back();
    if (belongs) runs.back().append(point.bytes);
    inRun = belongs;
  });
  return runs;
}

std::string spacedCamelCase(std::string_view text) {
  std::string result;
  bool afterLower = false;
  forEachCodePoint(text, [&](const CodePoint& point) {
    if (afterLower && point.code >= 0 && u_isupper(point.code)) result.push_back(' ');
    result.append(point.bytes);
    afterLower = point.code >= 0 && u_islower(point.code);
  });
  return result;
}

std::string escapedForDisplay(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  forEachCodePoint(text, [&](const CodePoint& point) {
    if (point.code < 0) {
      result += fmt::format("\\x{:02x}", static_cast<unsigned char>(point.bytes.front()));
      return;
    }
    if (point.code == '\n' || point.code == '\t' || point.code == '\r') {
      result += point.code == '\n' ? "\\n" : point.code == '\t' ? "\\t" : "\\r";
      return;
    }
    constexpr uint32_t hidden = U_GC_CC_MASK | U_GC_CF_MASK | U_GC_CS_MASK | U_GC_CN_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK;
    const bool hides = (U_GET_GC_MASK(point.code) & hidden) != 0;
    // Joiners shape letters and emoji and move nothing else on the line.
    const bool joiner = point.code == 0x200C || point.code == 0x200D;
    if (!hides || joiner) {
      result.append(point.bytes);
    } else if (point.code < 0x80) {
      result += fmt::format("\\x{:02x}", static_cast<unsigned>(point.code));
    } else {
      result += fmt::format("\\u{:04x}", static_cast<unsigned>(point.code));
    }
  });
  return result;
}

int displayWidth(std::string_view text) {
  int width = 0;
  forEachCodePoint(text, [&](const CodePoint& point) {
    if (point.code < 0) {
      ++width;
      return;
    }
    const auto category = U_GET_GC_MASK(point.code);
    if ((category & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_CC_MASK)) != 0) return;
    const auto eastAsian = u_getIntPropertyValue(point.code, UCHAR_EAST_ASIAN_WIDTH);
    width += eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH ? 2 : 1;
  });
  return width;
}

}  // namespace orvane
