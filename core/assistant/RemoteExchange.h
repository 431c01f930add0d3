#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/platform/HttpTransport.h"

#include <stop_token>
#include <string>
#include <string_view>

namespace orvane {

// The parts that the remote clients share.

// A POST to `path` of the server at `baseAddress`, without a key.
[[nodiscard]] HttpRequest postTo(std::string_view baseAddress, std::string_view path, const Json& body);

// The body of the reply to `request` with one more header in front, whose value is wiped after use.
// Throws HttpError; PlannerError for a status that is no success.
[[nodiscard]] std::string replyTo(HttpRequest request, HttpHeader secretHeader, HttpTransport& session,
                                  const std::stop_token& stop);

// A reply's JSON in bounded time and memory. Throws PlannerError.
[[nodiscard]] Json replyJson(std::string_view body);

// The text as a whole as a plan, nothing stripped from it, and validated. Throws JsonError or PlanValidationError.
[[nodiscard]] CleaningPlan validPlanFrom(std::string_view text);

}  // namespace orvane
