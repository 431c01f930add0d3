#include "core/plans/records/CleaningPlan.h"

#include "core/base/text/Json.h"
#include "core/plans/records/PlanExecutionSummary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace orvane {
namespace {

using testing::HasSubstr;

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

  EXPECT_EQ(plan.userGoal, "tidy");
  EXPECT_FALSE(plan.isDryRun);
  EXPECT_EQ(referenceSeconds(plan.createdAt), 731234567.0625);
  ASSERT_EQ(plan.steps.size(), 2U);
  EXPECT_EQ(plan.steps[0].action, PlannedAction::move);
  EXPECT_EQ(plan.steps[0].destinationFolder, "/home/ann/Docs");
  EXPECT_EQ(plan.steps[0].filter.minimumSizeBytes, -5);
  EXPECT_EQ(plan.steps[1].filter, CleaningFilter{});
  EXPECT_FALSE(plan.steps[1].destinationFolder);
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

TEST(CleaningPlan, ignoresKeysThatItDoesNotKnow) {
  auto json = parseJson(fullPlan);
  json["confidence"] = 0.5;
  json["steps"][0]["filter"]["maximumAgeDays"] = "x";
  EXPECT_EQ(CleaningPlan::fromJson(json), CleaningPlan::decode(fullPlan));
}

TEST(CleaningPlan, requiresEveryKeyButTheOptionalOnes) {
  const Json whole = parseJson(fullPlan);
  const auto expectRefused = [](const Json& json, const std::string& key) {
    EXPECT_THROW((void)CleaningPlan::fromJson(json), JsonError) << key;
  };
  for (const auto& [key, value] : whole.items()) {
    Json without = whole;
    without.erase(key);
    expectRefused(without, key);
    Json null = whole;
    null[key] = nullptr;
    expectRefused(null, key);
  }
  for (const char* key : {"id", "targetFolder", "filter", "action", "explanation"}) {
    Json without = whole;
    without["steps"][0].erase(key);
    expectRefused(without, key);
  }
}

struct WrongValue {
  const char* name;
  const char* pointer;
  const char* value;
  const char* message;
};
void PrintTo(const WrongValue& wrong, std::ostream* out) {
  *out << wrong.name;
}
class CleaningPlanRefuses : public testing::TestWithParam<WrongValue> {};

TEST_P(CleaningPlanRefuses, namingTheKey) {
  const auto& wrong = GetParam();
  Json json = parseJson(fullPlan);
  json[Json::json_pointer(wrong.pointer)] = Json::parse(wrong.value);
  try {
    (void)CleaningPlan::fromJson(json);
    FAIL() << "accepted";
  } catch (const JsonError& error) {
    EXPECT_THAT(error.what(), HasSubstr(wrong.message));
  }
}
INSTANTIATE_TEST_SUITE_P(
    WrongTypes, CleaningPlanRefuses,
    testing::Values(
        WrongValue{"identity without hyphens", "/id", R"("0D3A2B467C584E6F9A101B2C3D4E5F60")", "\"id\""},
        WrongValue{"number as goal", "/userGoal", "1", "\"userGoal\""},
        WrongValue{"object as steps", "/steps", "{}", "\"steps\""},
        WrongValue{"text as step", "/steps/0", R"("trash everything")", "expected an object"},
        WrongValue{"number as flag", "/isDryRun", "1", "\"isDryRun\""},
        WrongValue{"text as date", "/createdAt", R"("2024-01-01T00:00:00Z")", "\"createdAt\""},
        WrongValue{"flag as date", "/createdAt", "true", "\"createdAt\""},
        WrongValue{"unknown action", "/steps/0/action", R"("delete")", "\"action\" \"delete\""},
        WrongValue{"capital action", "/steps/0/action", R"("Trash")", "\"action\""},
        WrongValue{"list as filter", "/steps/0/filter", "[]", "object"},
        WrongValue{"unknown category", "/steps/0/filter/categories/0", R"("Caches")", "unknown category \"Caches\""},
        WrongValue{"text as categories", "/steps/0/filter/categories", R"("caches")", "\"categories\""},
        WrongValue{"number as extension", "/steps/0/filter/extensions/0", "7", "\"extensions\""},
        WrongValue{"fraction of a day", "/steps/0/filter/minimumAgeDays", "1.5", "\"minimumAgeDays\""},
        WrongValue{"size beyond 64 bits", "/steps/0/filter/minimumSizeBytes", "9223372036854775808", "64 bits"},
        WrongValue{"hidden end of a path", "/steps/0/targetFolder", R"("/home/ann\u0000/x")", "NUL"},
        WrongValue{"hidden end of a destination", "/steps/0/destinationFolder", R"("/home\u0000")", "NUL"}));

TEST(CleaningPlan, aReplyByTheLetterOfThePromptIsNoPlan) {
  EXPECT_THROW((void)CleaningPlan::decode(
                   R"({"userGoal":"g","summary":"s","steps":[{"targetFolder":"/t","filter":{"minimumAgeDays":1},)"
                   R"("action":"trash","destinationFolder":null,"explanation":"e"}]})"),
               JsonError);
}

std::string repeated(std::string_view text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  while (count-- > 0) result += text;
  return result;
}

struct HostileText {
  const char* name;
  std::string (*text)();  // made when it is needed: some are large
  const char* message;
};
void PrintTo(const HostileText& hostile, std::ostream* out) {
  *out << hostile.name;
}
class HostilePlan : public testing::TestWithParam<HostileText> {};

TEST_P(HostilePlan, isRefusedWithAShortMessage) {
  try {
    (void)CleaningPlan::decode(GetParam().text());
    FAIL() << "accepted";
  } catch (const JsonError& error) {
    EXPECT_THAT(error.what(), HasSubstr(GetParam().message));
    EXPECT_LT(std::string_view(error.what()).size(), 400U);
  }
}

std::string manyKeys(std::size_t count) {
  std::string text = "{";
  for (std::size_t i = 0; i < count; ++i) text += "\"" + std::to_string(i) + "\":1,";
  return text + "\"end\":1}";
}
constexpr std::size_t megabyte = 1'000'000;

INSTANTIATE_TEST_SUITE_P(
    Texts, HostilePlan,
    testing::Values(
        HostileText{"empty", [] { return std::string(); }, "not valid JSON"},
        HostileText{"no object", [] { return std::string("[]"); }, "expected an object"},
        HostileText{"half", [] { return std::string(fullPlan.substr(0, 300)); }, "not valid JSON"},
        HostileText{"more behind it", [] { return std::string(fullPlan) + "{}"; }, "not valid JSON"},
        HostileText{"deep arrays", [] { return repeated("[", megabyte); }, "nested deeper"},
        HostileText{"deep objects", [] { return repeated(R"({"a":)", 100'000); }, "nested deeper"},
        HostileText{"key twice", [] { return std::string(R"({"id":"a","id":"b"})"); }, "stands twice"},
        HostileText{"long key twice",
                    [] {
                      const auto key = "\"" + repeated("k", megabyte) + "\":1";
                      return "{" + key + "," + key + "}";
                    },
                    "stands twice"},
        HostileText{"keys without end", [] { return manyKeys(300'000); }, "more than 256 keys"},
        HostileText{"not a number", [] { return std::string(R"({"createdAt":NaN})"); }, "not valid JSON"},
        HostileText{"infinite", [] { return std::string(R"({"createdAt":-Infinity})"); }, "not valid JSON"},
        HostileText{"huge exponent", [] { return std::string(R"({"createdAt":1e999999})"); }, "not valid JSON"},
        HostileText{"huge number", [] { return "{\"createdAt\":" + repeated("9", megabyte) + "}"; }, "not valid JSON"},
        HostileText{"half a surrogate", [] { return std::string(R"({"userGoal":"\ud800"})"); }, "not valid JSON"},
        HostileText{"no text", [] { return std::string("{\"userGoal\":\"\xff\xfe\"}"); }, "not valid JSON"},
        HostileText{"long junk", [] { return "{\"userGoal\":\"" + repeated("x", megabyte) + "\n\"}"; },
                    "not valid JSON"},
        HostileText{"comment", [] { return std::string("/* */ {}"); }, "not valid JSON"},
        HostileText{"a hundred megabytes", [] { return repeated(" ", 100 * megabyte); }, "longer than"}));

TEST(PlannedAction, isListedAndReadInOrder) {
  EXPECT_THAT(allPlannedActions,
              testing::ElementsAre(PlannedAction::trash, PlannedAction::review, PlannedAction::move));
  for (const auto action : allPlannedActions) EXPECT_EQ(plannedActionFromRawValue(rawValue(action)), action);
  EXPECT_FALSE(plannedActionFromRawValue("TRASH"));
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
}  // namespace orvane
