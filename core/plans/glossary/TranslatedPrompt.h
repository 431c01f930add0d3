#pragma once

#include "core/base/text/TextSpan.h"
#include "core/localization/records/AppLanguage.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A request in the words of the parser's tables, and where each of them comes from in the request as it was typed.
// English is taken as it is. A request counts as another language's where its glossary knows more of the words than
// English has; words that no glossary knows stay as they are.
class TranslatedPrompt {
 public:
  // Of several languages that know as many words the one of the window counts.
  static TranslatedPrompt of(std::string_view prompt, AppLanguage window = AppLanguage::en);

  // Questions and verbs come first, as in English: a name stands behind what is asked of it.
  [[nodiscard]] const std::string& text() const noexcept { return m_text; }
  [[nodiscard]] AppLanguage language() const noexcept { return m_language; }
  // The part of the request as typed that a part of the text comes from.
  [[nodiscard]] TextSpan typed(const TextSpan& span) const;

 private:
  struct Origin {
    TextSpan span;
    TextSpan typed;
  };

  std::string m_text;
  AppLanguage m_language = AppLanguage::en;
  std::vector<Origin> m_origins;  // in the order of the text; none where it is the request itself
};

}  // namespace orvane
