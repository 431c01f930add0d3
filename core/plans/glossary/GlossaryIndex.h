#pragma once

#include "core/localization/records/AppLanguage.h"
#include "core/plans/glossary/FoldedWords.h"
#include "core/plans/glossary/Glossary.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A glossary that finds the longest entry at a place of a request.
class GlossaryIndex {
 public:
  struct Match {
    std::size_t length = 0;  // in words
    std::string english;
    bool isLoneNumber = false;  // no unit follows
  };

  GlossaryIndex(AppLanguage language, GlossaryRows rows);
  // Null for English.
  static const GlossaryIndex* of(AppLanguage language);

  // A number counts only before a unit, and is a word without meaning elsewhere, unless it is a part of a larger number
  // that the glossary does not know: nothing matches there.
  [[nodiscard]] std::optional<Match> matchAt(std::span<const FoldedWord> words) const;

 private:
  struct Part {
    std::string text;
    bool isStem = false;

    [[nodiscard]] bool matches(std::string_view word) const { return isStem ? word.starts_with(text) : word == text; }
  };
  struct Entry {
    std::vector<Part> parts;
    std::string_view english;
  };

  [[nodiscard]] std::optional<Match> longestAt(std::span<const FoldedWord> words) const;
  [[nodiscard]] bool isNumberAt(std::span<const FoldedWord> words) const;
  void add(std::string_view alternative, std::string_view english);
  void addEntry(Entry entry);
  [[nodiscard]] static bool fits(const Entry& entry, std::span<const FoldedWord> words);
  [[nodiscard]] bool isUnitAt(std::span<const FoldedWord> words) const;
  [[nodiscard]] std::optional<Match> compoundAt(std::string_view word) const;
  [[nodiscard]] const Entry* wordEntry(std::string_view word) const;

  bool m_hasCompounds = false;
  bool m_hasHanNumbers = false;
  std::map<std::string, std::vector<Entry>, std::less<>> m_entries;  // by their first word, longest first
  std::vector<Entry> m_stems;                                        // whose first word has any ending
};

// Whether an English word of the tables is a unit of age or size.
[[nodiscard]] bool isUnitWord(std::string_view english);
[[nodiscard]] bool isNumberText(std::string_view english);

}  // namespace orvane
