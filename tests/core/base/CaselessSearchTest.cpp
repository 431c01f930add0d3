#include "core/base/text/CaselessSearch.h"

#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

TEST(CaselessSearch, ignoresCaseAndComposition) {
  const Rows<std::string_view, std::string_view, bool> searches{
      {"REPORT", "my report.pdf", true},
      {"report.", "my RePoRt.pdf", true},
      {"reports", "my report.pdf", false},
      {"", "", true},
      {"a", "", false},
      {"[", "{", false},
      {"straße", "STRASSE", true},
      {"STRASSE", "Straße", true},
      {"\u212a", "a kelvin", true},  // the Kelvin sign folds to k
      {"k", "\u212a", true},
      {"É", "cafe\u0301.txt", true},
      {"é", "cafe.txt", false},
      {"x", "\xff\xfeX", true},
      {std::string_view("\0b", 2), std::string_view("a\0B", 3), true},
  };
  for (const auto& [needle, text, found] : searches) {
    EXPECT_EQ(CaselessSearch(needle).isIn(text), found) << needle << " in " << text;
  }
}

}  // namespace
}  // namespace orvane::test
