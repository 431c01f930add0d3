#include "core/scanning/records/StorageSummary.h"

#include "core/base/text/Json.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

StorageSummary sample() {
  return {1000, 250, 750, 100, 5000, {{ScanCategory::caches, 60}, {ScanCategory::trash, 40}}};
}

TEST(StorageSummary, givesFractionsOfTheDisk) {
  EXPECT_DOUBLE_EQ(sample().usedPercentage(), 0.75);
  EXPECT_DOUBLE_EQ(sample().reclaimablePercentage(), 0.1);
  EXPECT_EQ(StorageSummary{}.usedPercentage(), 0);
  EXPECT_EQ((StorageSummary{.totalDiskBytes = 0, .usedDiskBytes = 5, .categoryBreakdown = {}}.usedPercentage()), 0);
}

TEST(StorageSummary, survivesJson) {
  const auto json = sample().toJson();
  EXPECT_EQ(jsonText(json), R"({"totalDiskBytes":1000,"freeDiskBytes":250,"usedDiskBytes":750,"reclaimableBytes":100,)"
                            R"("lifetimeReclaimedBytes":5000,"categoryBreakdown":{"caches":60,"trash":40}})");
  EXPECT_EQ(StorageSummary::fromJson(json), sample());
}

TEST(StorageSummary, refusesUnknownCategories) {
  auto json = sample().toJson();
  json["categoryBreakdown"]["Caches"] = 1;
  EXPECT_THROW(static_cast<void>(StorageSummary::fromJson(json)), JsonError);
}

}  // namespace
}  // namespace orvane::test
