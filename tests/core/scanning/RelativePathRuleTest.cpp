#include "core/scanning/walk/RelativePathRule.h"

#include "tests/support/Testing.h"

#include <random>

namespace orvane::test {
namespace {

TEST(RelativePath, takesOutEveryOccurrenceOfTheRoot) {
  const Rows<const char*, const char*, const char*> rows{
      {"/h/u/x/y.txt", "/h/u", "x/y.txt"},
      {"/a/x/a/y", "/a", "x/y"},
      {"/a/apple", "/a", "pple"},
      {"/a/a", "/a", "a"},
      {"/h/x", "/", "hx"},
      {"/h/u/x/h/u", "/h/u", "x"},
  };
  for (const auto& [path, root, relative] : rows) EXPECT_EQ(relativePath(path, root), relative);
}

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
}  // namespace orvane::test
