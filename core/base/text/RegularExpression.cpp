#include "core/base/text/RegularExpression.h"

#include <unicode/regex.h>
#include <unicode/utext.h>

namespace orvane {
namespace {

// Steps of the matching engine, each ten thousand saved states: some tenths of a second.
constexpr int32_t timeLimit = 500;

// Text as ICU reads it, without a copy: its native offsets are those of the bytes.
class Utf8Text {
 public:
  explicit Utf8Text(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    ::utext_openUTF8(&m_text, text.data() == nullptr ? "" : text.data(), static_cast<int64_t>(text.size()), &status);
    m_opened = U_SUCCESS(status);
  }
  ~Utf8Text() { ::utext_close(&m_text); }
  Utf8Text(const Utf8Text&) = delete;
  Utf8Text& operator=(const Utf8Text&) = delete;

  // Null when it could not be opened.
  [[nodiscard]] UText* get() noexcept { return m_opened ? &m_text : nullptr; }

 private:
  UText m_text = UTEXT_INITIALIZER;
  bool m_opened = false;
};

}  // namespace

struct RegularExpression::Pattern {
  std::unique_ptr<icu::RegexPattern> compiled;
};

RegularExpression::RegularExpression(std::unique_ptr<const Pattern> pattern) : m_pattern(std::move(pattern)) {}
RegularExpression::RegularExpression(RegularExpression&&) noexcept = default;
RegularExpression& RegularExpression::operator=(RegularExpression&&) noexcept = default;
RegularExpression::~RegularExpression() = default;

std::optional<RegularExpression> RegularExpression::compile(std::string_view pattern) {
  UErrorCode status = U_ZERO_ERROR;
  UParseError where{};
  const auto text = icu::UnicodeString::fromUTF8({pattern.data(), static_cast<int32_t>(pattern.size())});
  auto compiled = std::make_unique<Pattern>();
  compiled->compiled.reset(icu::RegexPattern::compile(text, where, status));
  if (U_FAILURE(status) || !compiled->compiled) return std::nullopt;
  return RegularExpression(std::move(compiled));
}

std::optional<RegularExpression::Match> RegularExpression::firstMatch(std::string_view text) const {
  Utf8Text subject(text);
  if (subject.get() == nullptr) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::RegexMatcher> matcher(m_pattern->compiled->matcher(status));
  if (U_FAILURE(status) || !matcher) return std::nullopt;
  matcher->setTimeLimit(timeLimit, status);
  matcher->reset(subject.get());
  if (!matcher->find(status) || U_FAILURE(status)) return std::nullopt;

  const auto rangeOf = [&](int32_t group) -> std::optional<Range> {
    const auto start = matcher->start64(group, status);
    const auto end = matcher->end64(group, status);
    if (U_FAILURE(status) || start < 0) return std::nullopt;
    return Range{static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)};
  };
  Match match{rangeOf(0).value_or(Range{}), {}};
  for (int32_t group = 1; group <= matcher->groupCount(); ++group) match.groups.push_back(rangeOf(group));
  return match;
}

}  // namespace orvane
