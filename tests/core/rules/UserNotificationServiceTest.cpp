#include "core/rules/services/UserNotificationService.h"
#include "tests/support/RecordingCenter.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

class UserNotificationServiceTest : public testing::Test {
 public:
  RecordingCenter center;
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
