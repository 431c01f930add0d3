#include "core/scanning/walk/RelativePathRule.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace orvane {
namespace {

struct RelativeCase {
  const char* path;
  const char* root;
  const char* relative;
};
class RelativePath : public testing::TestWithParam<RelativeCase> {};

TEST_P(RelativePath, takesOutEveryOccurrenceOfTheRoot) {
  EXPECT_EQ(relativePath(GetParam().path, GetParam().root), GetParam().relative);
}
INSTANTIATE_TEST_SUITE_P(Paths, RelativePath,
                         testing::Values(RelativeCase{"/h/u/x/y.txt", "/h/u", "x/y.txt"},
                                         RelativeCase{"/a/x/a/y", "/a", "x/y"}, RelativeCase{"/a/apple", "/a", "pple"},
                                         RelativeCase{"/a/a", "/a", "a"}, RelativeCase{"/h/x", "/", "hx"},
                                         RelativeCase{"/h/u/x/h/u", "/h/u", "x"}));

TEST(RelativePathRule, agreesWhereverItAnswers) {
  const std::vector<std::string> pieces{"a", "b", "ab", "aab", "ba"};
  std::mt19937 random(11);
  int answered = 0;
  const auto path = [&](std::size_t least) {
    std::string result;
    for (auto depth = least + random() % 3; depth > 0; --depth) result += "/" + pieces[random() % pieces.size()];
    return result;
  };
  for (int i = 0; i < 20'000; ++i) {
    const auto root = path(1);
    const auto prefix = root + path(0) + "/";
    const auto& name = pieces[random() % pieces.size()];
    const auto start = RelativePathRule(root, prefix).start(name);
    if (!start) continue;
    ++answered;
    EXPECT_EQ((prefix + name).substr(*start), relativePath(prefix + name, root)) << prefix << name << " in " << root;
  }
  EXPECT_GT(answered, 5'000);
}

}  // namespace
}  // namespace orvane
