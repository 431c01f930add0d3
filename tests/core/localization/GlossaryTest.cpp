#include "core/base/text/RegularExpression.h"
#include "core/base/text/UnicodeText.h"
#include "core/localization/LocalizedStrings.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

using Cells = std::vector<std::string>;

Cells split(const std::string& text, char separator) {
  Cells result;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) result.push_back(trimmed(part));
  return result;
}

// The rows of the table under a heading, without the names of its columns.
std::vector<Cells> tableUnder(const std::string& heading) {
  std::istringstream lines(contentOf(ORVANE_SOURCES "/docs/translating.md"));
  std::vector<Cells> rows;
  bool isUnder = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("## ")) isUnder = line == "## " + heading;
    if (isUnder && line.starts_with('|')) rows.push_back(split(line.substr(1), '|'));
  }
  if (rows.size() > 2) rows.erase(rows.begin(), rows.begin() + 2);
  return rows;
}

bool separatesWords(AppLanguage language) {
  using enum AppLanguage;
  return language == en || language == fr || language == de || language == es;
}

// Matches a text that holds one of the forms: "analys-, scan".
RegularExpression anyOf(const std::string& forms, AppLanguage language) {
  std::string pattern;
  for (auto form : split(forms, ',')) {
    const bool isOpenBefore = form.starts_with('-') || !separatesWords(language);
    const bool isOpenAfter = form.ends_with('-') || !separatesWords(language);
    std::erase(form, '-');
    if (!pattern.empty()) pattern += '|';
    pattern += (isOpenBefore ? "" : "(?<!\\p{L})") + form + (isOpenAfter ? "" : "(?!\\p{L})");
  }
  return *RegularExpression::compile("(?i)" + pattern);
}

struct Term {
  std::string name;
  std::vector<RegularExpression> patterns;  // in the order of the languages
};

std::vector<Term> glossary() {
  std::vector<Term> terms;
  for (const auto& row : tableUnder("Glossary")) {
    EXPECT_EQ(row.size(), allAppLanguages.size()) << row.front();
    auto& term = terms.emplace_back(Term{split(row.front(), ',').front(), {}});
    for (const auto language : allAppLanguages) {
      term.patterns.push_back(anyOf(row.at(static_cast<std::size_t>(language)), language));
    }
  }
  return terms;
}

struct Exception {
  std::string key;
  std::string term;
  Cells languages;
  bool isNeeded = false;

  [[nodiscard]] bool covers(AppLanguage language) const {
    return languages.front() == "all" || std::ranges::count(languages, rawValue(language)) > 0;
  }
};

std::vector<Exception> exceptions() {
  std::vector<Exception> result;
  for (const auto& row : tableUnder("Exceptions")) result.push_back({row.at(0), row.at(1), split(row.at(2), ',')});
  return result;
}

TEST(Glossary, isKeptInEveryText) {
  const auto terms = glossary();
  auto excepted = exceptions();
  ASSERT_GT(terms.size(), 30U);
  const auto isExcepted = [&](std::string_view key, const std::string& term, AppLanguage language) {
    const auto found = std::ranges::find_if(excepted, [&](const Exception& exception) {
      return exception.key == key && exception.term == term && exception.covers(language);
    });
    if (found != excepted.end()) found->isNeeded = true;
    return found != excepted.end();
  };
  for (const auto key : LocalizedStrings::keys()) {
    for (const auto& term : terms) {
      if (!term.patterns.front().firstMatch(LocalizedStrings::lookup(AppLanguage::en, key))) continue;
      for (const auto language : allAppLanguages) {
        const auto text = LocalizedStrings::lookup(language, key);
        if (term.patterns[static_cast<std::size_t>(language)].firstMatch(text)) continue;
        EXPECT_TRUE(isExcepted(key, term.name, language))
            << key << ' ' << rawValue(language) << " has no word for \"" << term.name << "\": " << text;
      }
    }
  }
  for (const auto& exception : excepted) EXPECT_TRUE(exception.isNeeded) << exception.key << ' ' << exception.term;
}

}  // namespace
}  // namespace orvane::test
