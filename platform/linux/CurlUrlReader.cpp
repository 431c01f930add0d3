#include "platform/linux/CurlUrlReader.h"

#include "core/base/text/AsciiText.h"
#include "platform/linux/CurlLibrary.h"

#include <arpa/inet.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

struct CloseUrl {
  void operator()(CURLU* handle) const noexcept { CurlLibrary::get().urlCleanUp(handle); }
};
using Url = std::unique_ptr<CURLU, CloseUrl>;

// Empty where the address does not have it.
std::string partOf(const Url& url, CURLUPart which) {
  const auto& curl = CurlLibrary::get();
  char* text = nullptr;
  if (curl.urlGet(url.get(), which, &text, 0) != CURLUE_OK || text == nullptr) return {};
  const std::unique_ptr<char, decltype(curl.free)> owner(text, curl.free);
  return text;
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) noexcept {
  return std::ranges::equal(left, right, {}, lowerAscii, lowerAscii);
}

bool isThisMachine(std::string_view host) {
  if (equalsIgnoringCase(host, "localhost")) return true;
  if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
  in6_addr sixth{};
  if (::inet_pton(AF_INET6, std::string(host).c_str(), &sixth) == 1) return IN6_IS_ADDR_LOOPBACK(&sixth);
  in_addr fourth{};
  return ::inet_pton(AF_INET, std::string(host).c_str(), &fourth) == 1 && (ntohl(fourth.s_addr) >> 24) == 127;
}

}  // namespace

std::optional<HttpUrl> CurlUrlReader::read(const std::string& text) const {
  const auto& curl = CurlLibrary::get();
  const Url url(curl.url());
  const bool isOne = url && text.find('\0') == std::string::npos &&
                     curl.urlSet(url.get(), CURLUPART_URL, text.c_str(), CURLU_DISALLOW_USER) == CURLUE_OK;
  if (!isOne) return std::nullopt;
  auto written = partOf(url, CURLUPART_URL);
  // The library also takes other ways to write an address, such as "127.1" for "127.0.0.1": nobody needs them.
  if (!equalsIgnoringCase(text, written) && !equalsIgnoringCase(text + '/', written)) return std::nullopt;
  const auto scheme = partOf(url, CURLUPART_SCHEME);
  if ((scheme != "http" && scheme != "https") || partOf(url, CURLUPART_PORT) == "0") return std::nullopt;
  for (const auto part : {CURLUPART_QUERY, CURLUPART_FRAGMENT, CURLUPART_ZONEID}) {
    if (!partOf(url, part).empty()) return std::nullopt;
  }
  return HttpUrl{std::move(written), scheme == "https", isThisMachine(partOf(url, CURLUPART_HOST))};
}

}  // namespace orvane
