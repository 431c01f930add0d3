#include "core/assistant/RemoteExchange.h"

#include "core/assistant/records/PlannerError.h"
#include "core/base/text/Json.h"
#include "core/base/text/SecretText.h"
#include "core/plans/CleaningPlanSchema.h"

#include <utility>

namespace orvane {
namespace {

constexpr int firstSuccess = 200;
constexpr int lastSuccess = 299;

// Wipes the header that holds the key, however the call ends.
class SecretHeaderGuard {
 public:
  explicit SecretHeaderGuard(HttpHeader& header) : m_header(header) {}
  ~SecretHeaderGuard() { wipe(m_header.value); }
  SecretHeaderGuard(const SecretHeaderGuard&) = delete;
  SecretHeaderGuard& operator=(const SecretHeaderGuard&) = delete;

 private:
  HttpHeader& m_header;
};

}  // namespace

HttpRequest postTo(std::string_view baseAddress, std::string_view path, const Json& body) {
  while (baseAddress.ends_with('/')) baseAddress.remove_suffix(1);
  HttpRequest request;
  request.url = std::string(baseAddress).append(path);
  request.body = jsonText(body);
  return request;
}

std::string replyTo(HttpRequest request, HttpHeader secretHeader, HttpTransport& session, const std::stop_token& stop) {
  request.headers.insert(request.headers.begin(), std::move(secretHeader));
  const SecretHeaderGuard guard(request.headers.front());
  auto response = session.send(request, stop);
  if (response.status < firstSuccess || response.status > lastSuccess) {
    throw PlannerError(PlannerError::BadServerResponse{response.status});
  }
  return std::move(response.body);
}

Json replyJson(std::string_view body) {
  try {
    return parseJson(body, {.duplicateKeys = DuplicateKeys::takeFirst});
  } catch (const JsonError&) {
    throw PlannerError(PlannerError::CannotParseResponse{});
  }
}

CleaningPlan validPlanFrom(std::string_view text) {
  auto plan = CleaningPlan::decode(text);
  CleaningPlanSchema::validate(plan);
  return plan;
}

}  // namespace orvane
