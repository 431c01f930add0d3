#include "core/base/text/CaselessSearch.h"

#include <gtest/gtest.h>

#include <string_view>

namespace orvane {
namespace {

struct Search {
  std::string_view needle;
  std::string_view text;
  bool found;
};
class CaselessSearchOf : public testing::TestWithParam<Search> {};

TEST_P(CaselessSearchOf, ignoresCaseAndComposition) {
  EXPECT_EQ(CaselessSearch(GetParam().needle).isIn(GetParam().text), GetParam().found);
}
INSTANTIATE_TEST_SUITE_P(Texts, CaselessSearchOf,
                         testing::Values(Search{"REPORT", "my report.pdf", true},
                                         Search{"report.", "my RePoRt.pdf", true},
                                         Search{"reports", "my report.pdf", false}, Search{"", "", true},
                                         Search{"a", "", false}, Search{"[", "{", false},
                                         Search{"straße", "STRASSE", true}, Search{"STRASSE", "Straße", true},
                                         Search{"\u212a", "a kelvin", true},  // the Kelvin sign folds to k
                                         Search{"k", "\u212a", true}, Search{"É", "cafe\u0301.txt", true},
                                         Search{"é", "cafe.txt", false}, Search{"x", "\xff\xfeX", true},
                                         Search{std::string_view("\0b", 2), std::string_view("a\0B", 3), true}));

}  // namespace
}  // namespace orvane
