#include "core/base/text/CaselessSearch.h"

#include "core/base/text/AsciiText.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace orvane {
namespace {

// The letters I and i belong to different letters there.
bool isTurkic() {
  const std::string_view language = icu::Locale::getDefault().getLanguage();
  return language == "tr" || language == "az";
}

// Folded for comparison without case, as the locale's language does, and canonically decomposed.
icu::UnicodeString folded(std::string_view text) {
  auto result = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
  result.foldCase(isTurkic() ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFDInstance(status);
  if (U_FAILURE(status) || normalizer->isNormalized(result, status)) return result;
  return normalizer->normalize(result, status);
}

}  // namespace

CaselessSearch::CaselessSearch(std::string_view needle) : m_foldsAsAscii(!isTurkic()) {
  const auto text = folded(needle);
  m_folded.assign(text.getBuffer(), static_cast<std::size_t>(text.length()));
  if (std::ranges::all_of(m_folded, [](char16_t c) { return c < 0x80; })) {
    for (const char16_t c : m_folded) m_asciiFolded.push_back(static_cast<char>(c));
  }
}

bool CaselessSearch::isIn(std::string_view text) const {
  if (m_folded.empty()) return true;
  // Nearly every file name: no text is made to look at it.
  if (m_foldsAsAscii && isAscii(text)) {
    if (m_asciiFolded.empty()) return false;
    const auto same = [](char left, char right) { return lowerAscii(left) == right; };
    return std::search(text.begin(), text.end(), m_asciiFolded.begin(), m_asciiFolded.end(), same) != text.end();
  }
  return folded(text).indexOf(m_folded.data(), static_cast<int32_t>(m_folded.size()), 0) >= 0;
}

}  // namespace orvane
