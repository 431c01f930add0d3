// Any reply of a remote planner is a valid plan or one of the errors that are expected.

#include "core/assistant/AnthropicClient.h"
#include "core/assistant/OpenAIClient.h"
#include "core/assistant/records/PlannerError.h"
#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"
#include "tests/fuzz/FuzzCheck.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace orvane::fuzz {
namespace {

template <typename Client>
void read(std::string_view body) {
  try {
    check(!CleaningPlanSchema::firstFault(Client::planFromReply(body)), "a plan is valid");
  } catch (const JsonError&) {
  } catch (const PlannerError&) {
  } catch (const PlanValidationError&) {
  }
}

}  // namespace
}  // namespace orvane::fuzz

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
  return ::setenv("HOME", "/home/fuzz", 1);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view body(reinterpret_cast<const char*>(data), size);
  orvane::fuzz::read<orvane::AnthropicClient>(body);
  orvane::fuzz::read<orvane::OpenAIClient>(body);
  return 0;
}
