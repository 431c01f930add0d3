// Any reply of a remote planner is a valid plan or one of the errors that are expected.

#include "core/assistant/AnthropicClient.h"
#include "core/assistant/OpenAIClient.h"
#include "core/assistant/records/PlannerError.h"
#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"
#include "tests/fuzz/FuzzCheck.h"

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

void run(std::string_view body) {
  read<AnthropicClient>(body);
  read<OpenAIClient>(body);
}

}  // namespace orvane::fuzz
