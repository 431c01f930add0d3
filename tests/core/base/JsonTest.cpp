#include "core/base/text/Json.h"
#include "core/base/values/CheckedArithmetic.h"
#include "tests/support/Testing.h"

#include <cmath>
#include <limits>

namespace orvane::test {
namespace {

std::string errorOf(std::string_view text, const JsonLimits& limits = {}) {
  try {
    static_cast<void>(parseJson(text, limits));
    return {};
  } catch (const JsonError& error) {
    return error.what();
  }
}

TEST(Json, refusesHostileText) {
  const Rows<std::string, const char*> texts{
      {std::string(100'000, '['), "deeper than 64"},
      {R"({"a":1,"b":{"a":2},"a":3})", "\"a\" stands twice"},
      {"{\"a\":1", "not valid JSON"},
      {"NaN", "not valid JSON"},
      {"\"\xff\"", "not valid JSON"},
      {"1e999", "not valid JSON"},
  };
  for (const auto& [text, reason] : texts) EXPECT_THAT(errorOf(text), HasSubstr(reason));
  EXPECT_THAT(errorOf("[1,2]", {.bytes = 4}), HasSubstr("longer than 4 bytes"));
  EXPECT_EQ(errorOf(R"([{"a":1},{"a":2}])"), "");
}

TEST(Json, namesTheKeyThatIsWrong) {
  const auto json =
      parseJson(R"({"text":1,"number":1.5,"large":9223372036854775808,"id":"x","url":"http://a","no":null})");
  const auto error = [&](auto read) -> std::string {
    try {
      read();
      return {};
    } catch (const JsonError& thrown) {
      return thrown.what();
    }
  };
  EXPECT_EQ(error([&] { (void)stringAt(json, "text"); }), "\"text\" must be a string");
  EXPECT_EQ(error([&] { (void)integerAt(json, "number"); }), "\"number\" must be an integer of at most 64 bits");
  EXPECT_EQ(error([&] { (void)integerAt(json, "large"); }), "\"large\" must be an integer of at most 64 bits");
  EXPECT_EQ(error([&] { (void)uuidAt(json, "id"); }), "\"id\" must be a UUID");
  EXPECT_EQ(error([&] { (void)urlAt(json, "url"); }), "\"url\" must be a file URL with an absolute path");
  EXPECT_EQ(error([&] { (void)stringAt(json, "no"); }), "\"no\" must not be null");
  EXPECT_EQ(error([&] { (void)stringAt(json, "absent"); }), "key \"absent\" is missing");
  EXPECT_EQ(optionalKey(json, "no"), nullptr);
}

TEST(Json, datesReadBackToTheSameBits) {
  for (const double seconds : {0.0, -1.0, 785000000.125, 785432100.1234567, 1e-300, 9007199254740993.0, -0.0}) {
    const auto text = jsonText(jsonFromDate(dateFromReferenceSeconds(seconds)));
    const auto back = referenceSeconds(dateFrom(parseJson(text), "date"));
    EXPECT_EQ(std::signbit(back), std::signbit(seconds)) << text;
    EXPECT_EQ(back, seconds) << text;
  }
  EXPECT_EQ(jsonText(jsonFromDate(dateFromReferenceSeconds(700000000))), "700000000");
}

TEST(CheckedArithmeticDeathTest, anOverflowEndsTheProcess) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(checkedAdd<std::int64_t>(most, 0), most);
  EXPECT_DEATH((void)checkedAdd<std::int64_t>(most, 1), "overflow");
  EXPECT_DEATH((void)checkedMultiply<std::int64_t>(most, 2), "overflow");
}

}  // namespace
}  // namespace orvane::test
