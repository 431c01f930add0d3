#include "core/scanning/walk/RelativePathRule.h"
#include "core/scanning/walk/WorkStack.h"
#include "tests/support/Testing.h"

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

class Named : public WorkStack::Task {
 public:
  using Body = std::function<void(WorkStack& stack, const Task& self)>;
  Named(std::vector<std::string>& ran, std::string name, Body body = {})
      : m_ran(ran), m_name(std::move(name)), m_body(std::move(body)) {}

  void run(WorkStack& stack) override {
    m_ran.push_back(m_name);
    if (m_body) m_body(stack, *this);
  }

 private:
  std::vector<std::string>& m_ran;
  std::string m_name;
  Body m_body;
};

// Two tasks run at the same time here, the second inside the first.
TEST(WorkStack, keepsTheOrderOfTheWalkWhicheverTaskEndsFirst) {
  std::vector<std::string> ran;
  WorkStack stack;
  const auto push = [&](const WorkStack::Task& maker, std::vector<std::string> names) {
    WorkStack::Tasks tasks;
    for (auto& name : names) tasks.push_back(std::make_unique<Named>(ran, std::move(name)));
    stack.push(tasks, maker, WorkStack::Maker::goesOn);
  };
  WorkStack::Tasks tasks;
  tasks.push_back(std::make_unique<Named>(ran, "a", [&](WorkStack& again, const WorkStack::Task& self) {
    again.work(1);
    push(self, {"a/3"});
  }));
  const auto& first = *tasks.front();
  tasks.push_back(std::make_unique<Named>(ran, "b", [&](WorkStack& /*stack*/, const WorkStack::Task& second) {
    push(first, {"a/1", "a/2"});
    push(second, {"b/1"});
  }));
  stack.push(tasks);
  stack.work();
  EXPECT_EQ(ran, (std::vector<std::string>{"a", "b", "a/1", "a/2", "a/3", "b/1"}));
}

}  // namespace
}  // namespace orvane::test
