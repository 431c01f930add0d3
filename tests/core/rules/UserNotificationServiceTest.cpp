#include "core/platform/NotificationCenter.h"
#include "core/rules/services/UserNotificationService.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

struct Center : NotificationCenter {
  bool requestAuthorization() override {
    if (fails) throw std::runtime_error("no service");
    return true;
  }
  void post(const Notification& notification) override {
    if (fails) throw std::runtime_error("no service");
    posted.push_back(notification);
  }
  void awaitAnswers(std::chrono::milliseconds /*limit*/) noexcept override {}
  bool fails = false;
  std::vector<Notification> posted;
};

class UserNotificationServiceTest : public testing::Test {
 public:
  Center center;
  std::string console;
  UserNotificationService service{center, [this](std::string_view line) { console += line; }};
};

TEST_F(UserNotificationServiceTest, announcesARunThatDidSomething) {
  service.postCleanupSummary(0, 99);
  EXPECT_TRUE(center.posted.empty());
  service.postCleanupSummary(3, 2000);
  service.postCleanupSummary(1, 0);
  ASSERT_EQ(center.posted.size(), 2U);
  EXPECT_EQ(center.posted[0].title, "Orvane Scheduled Cleanup Complete");
  EXPECT_TRUE(center.posted[0].body.starts_with("Reclaimed 2"));
  EXPECT_TRUE(center.posted[0].body.ends_with(" across 3 files. Tap to view details or undo."));
  EXPECT_NE(center.posted[0].identifier, center.posted[1].identifier);
}

TEST_F(UserNotificationServiceTest, leavesALineWhereNobodyListens) {
  EXPECT_TRUE(service.requestAuthorization());
  center.fails = true;
  EXPECT_FALSE(service.requestAuthorization());
  service.postCleanupSummary(1, 1);
  EXPECT_EQ(console, "Failed to dispatch notification: no service");
}

}  // namespace
}  // namespace orvane::test
