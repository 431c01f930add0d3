#include "core/platform/HttpTransport.h"

#include <utility>

namespace orvane {
namespace {

struct Describe {
  std::string operator()(const HttpError::UrlRefused& e) const {
    return "'" + e.url + "' is no https address, nor http to this machine.";
  }
  std::string operator()(const HttpError::TimedOut&) const { return "The server did not answer in time."; }
  std::string operator()(const HttpError::Cancelled&) const { return "The request was cancelled."; }
  std::string operator()(const HttpError::ReplyTooLarge&) const { return "The server's reply is too large."; }
  std::string operator()(const HttpError::Failed& e) const { return "The server could not be asked: " + e.reason; }
};

}  // namespace

HttpError::HttpError(Case which) : std::runtime_error(std::visit(Describe{}, which)), m_which(std::move(which)) {}

}  // namespace orvane
