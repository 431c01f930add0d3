#include "core/plans/records/CleaningPlan.h"

#include "core/base/text/Json.h"
#include "core/plans/records/PlanExecutionSummary.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

// A plan that uses every key.
constexpr std::string_view fullPlan =
    R"({"id":"0D3A2B46-7C58-4E6F-9A10-1B2C3D4E5F60","userGoal":"tidy","steps":[)"
    R"({"id":"A1B2C3D4-0000-4000-8000-000000000001","targetFolder":"/home/ann/Downloads","filter":)"
    R"({"categories":["caches","oldDownloads"],"extensions":["pdf"],"minimumAgeDays":30,"minimumSizeBytes":-5,)"
    R"("nameContains":"report"},"action":"move","destinationFolder":"/home/ann/Docs","explanation":"Because."},)"
    R"({"id":"A1B2C3D4-0000-4000-8000-000000000002","targetFolder":"/t","filter":{},"action":"trash",)"
    R"("explanation":""}],"summary":"All of it.","isDryRun":false,"createdAt":731234567.0625})";

TEST(CleaningPlan, readsAndWritesTheSameText) {
  const auto plan = CleaningPlan::decode(fullPlan);
  EXPECT_EQ(jsonText(plan.toJson()), fullPlan);
  EXPECT_EQ(CleaningPlan::fromJson(plan.toJson()), plan);

  EXPECT_FALSE(plan.isDryRun);
  EXPECT_EQ(plan.steps.at(0).action, PlannedAction::move);
  auto unknown = parseJson(fullPlan);
  unknown["confidence"] = 0.5;
  unknown["steps"][0]["filter"]["maximumAgeDays"] = "x";
  EXPECT_EQ(CleaningPlan::fromJson(unknown), plan);
}

TEST(CleaningPlan, takesNullForAbsentAndKeepsEmptyListsApart) {
  auto json = parseJson(fullPlan);
  auto& step = json["steps"][0];
  step["destinationFolder"] = nullptr;
  step["filter"] = Json::parse(R"({"categories":null,"extensions":[],"minimumAgeDays":null,"nameContains":""})");
  const auto plan = CleaningPlan::fromJson(json);
  EXPECT_FALSE(plan.steps[0].destinationFolder);
  EXPECT_FALSE(plan.steps[0].filter.categories);
  ASSERT_TRUE(plan.steps[0].filter.extensions);
  EXPECT_TRUE(plan.steps[0].filter.extensions->empty());
  EXPECT_EQ(jsonText(plan.steps[0].filter.toJson()), R"({"extensions":[],"nameContains":""})");
}

TEST(CleaningPlan, requiresEveryKeyButTheOptionalOnes) {
  const Json whole = parseJson(fullPlan);
  std::vector<std::string> required{"/steps/0/id", "/steps/0/targetFolder", "/steps/0/filter", "/steps/0/action",
                                    "/steps/0/explanation"};
  for (const auto& key : keysOf(whole)) required.push_back("/" + key);
  for (const auto& pointer : required) {
    Json without = whole;
    without[Json::json_pointer(pointer).parent_pointer()].erase(Json::json_pointer(pointer).back());
    EXPECT_THROW((void)CleaningPlan::fromJson(without), JsonError) << pointer;
    Json null = whole;
    null[Json::json_pointer(pointer)] = nullptr;
    EXPECT_THROW((void)CleaningPlan::fromJson(null), JsonError) << pointer;
  }
}

TEST(CleaningPlan, refusesAWrongValueNamingTheKey) {
  const Rows<const char*, const char*, const char*> rows{
      {"/id", R"("0D3A2B467C584E6F9A101B2C3D4E5F60")", "\"id\""},
      {"/userGoal", "1", "\"userGoal\""},
      {"/steps", "{}", "\"steps\""},
      {"/steps/0", R"("trash everything")", "expected an object"},
      {"/isDryRun", "1", "\"isDryRun\""},
      {"/createdAt", R"("2024-01-01T00:00:00Z")", "\"createdAt\""},
      {"/createdAt", "true", "\"createdAt\""},
      {"/steps/0/action", R"("delete")", "\"action\" \"delete\""},
      {"/steps/0/action", R"("Trash")", "\"action\""},
      {"/steps/0/filter", "[]", "object"},
      {"/steps/0/filter/categories/0", R"("Caches")", "unknown category \"Caches\""},
      {"/steps/0/filter/categories", R"("caches")", "\"categories\""},
      {"/steps/0/filter/extensions/0", "7", "\"extensions\""},
      {"/steps/0/filter/minimumAgeDays", "1.5", "\"minimumAgeDays\""},
      {"/steps/0/filter/minimumSizeBytes", "9223372036854775808", "64 bits"},
      {"/steps/0/targetFolder", R"("/home/ann\u0000/x")", "NUL"},
      {"/steps/0/destinationFolder", R"("/home\u0000")", "NUL"},
  };
  for (const auto& [pointer, value, message] : rows) {
    Json json = parseJson(fullPlan);
    json[Json::json_pointer(pointer)] = Json::parse(value);
    EXPECT_THAT(messageOf<JsonError>([&] { return CleaningPlan::fromJson(json); }), HasSubstr(message))
        << pointer << " with " << value;
  }
}

std::string repeated(std::string_view text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  while (count-- > 0) result += text;
  return result;
}

std::string manyKeys(std::size_t count) {
  std::string text = "{";
  for (std::size_t i = 0; i < count; ++i) text += "\"" + std::to_string(i) + "\":1,";
  return text + "\"end\":1}";
}
constexpr std::size_t megabyte = 1'000'000;

TEST(CleaningPlan, refusesHostileTextWithAShortMessage) {
  // Made when it is needed: some are large.
  const Rows<const char*, std::string (*)(), const char*> rows{
      {"empty", [] { return std::string(); }, "not valid JSON"},
      {"no object", [] { return std::string("[]"); }, "expected an object"},
      {"half", [] { return std::string(fullPlan.substr(0, 300)); }, "not valid JSON"},
      {"more behind it", [] { return std::string(fullPlan) + "{}"; }, "not valid JSON"},
      {"deep arrays", [] { return repeated("[", megabyte); }, "nested deeper"},
      {"deep objects", [] { return repeated(R"({"a":)", 100'000); }, "nested deeper"},
      {"key twice", [] { return std::string(R"({"id":"a","id":"b"})"); }, "stands twice"},
      {"long key twice",
       [] {
         const auto key = "\"" + repeated("k", megabyte) + "\":1";
         return "{" + key + "," + key + "}";
       },
       "stands twice"},
      {"keys without end", [] { return manyKeys(300'000); }, "more than 256 keys"},
      {"not a number", [] { return std::string(R"({"createdAt":NaN})"); }, "not valid JSON"},
      {"infinite", [] { return std::string(R"({"createdAt":-Infinity})"); }, "not valid JSON"},
      {"huge exponent", [] { return std::string(R"({"createdAt":1e999999})"); }, "not valid JSON"},
      {"huge number", [] { return "{\"createdAt\":" + repeated("9", megabyte) + "}"; }, "not valid JSON"},
      {"half a surrogate", [] { return std::string(R"({"userGoal":"\ud800"})"); }, "not valid JSON"},
      {"no text", [] { return std::string("{\"userGoal\":\"\xff\xfe\"}"); }, "not valid JSON"},
      {"long junk", [] { return "{\"userGoal\":\"" + repeated("x", megabyte) + "\n\"}"; }, "not valid JSON"},
      {"comment", [] { return std::string("/* */ {}"); }, "not valid JSON"},
      {"a hundred megabytes", [] { return repeated(" ", 100 * megabyte); }, "longer than"},
  };
  for (const auto& [name, text, message] : rows) {
    const auto error = messageOf<JsonError>([&make = text] { return CleaningPlan::decode(make()); });
    EXPECT_THAT(error, HasSubstr(message)) << name;
    EXPECT_LT(error.size(), 400U) << name;
  }
}

TEST(PlanExecutionSummary, writesItsKeysInOrder) {
  PlanExecutionSummary summary;
  summary.itemsProcessed = 3;
  summary.bytesReclaimed = 4096;
  summary.timestamp = dateFromReferenceSeconds(0.5);
  EXPECT_EQ(jsonText(summary.toJson()),
            R"({"batchId":"00000000-0000-0000-0000-000000000000","itemsProcessed":3,"bytesReclaimed":4096,)"
            R"("timestamp":0.5})");
}

}  // namespace
}  // namespace orvane::test
