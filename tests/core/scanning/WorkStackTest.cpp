#include "core/scanning/walk/WorkStack.h"

#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

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
