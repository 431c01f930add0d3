#include "platform/linux/CurlTransport.h"

#include "platform/linux/CurlLibrary.h"
#include "platform/linux/CurlUrlReader.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string_view>

namespace orvane {
namespace {

constexpr int maxWait = 1000;  // milliseconds

struct CloseEasy {
  void operator()(CURL* handle) const noexcept { CurlLibrary::get().easyCleanUp(handle); }
};
struct CloseMulti {
  void operator()(CURLM* handle) const noexcept { CurlLibrary::get().multiCleanUp(handle); }
};
struct FreeList {
  void operator()(curl_slist* list) const noexcept { CurlLibrary::get().listFreeAll(list); }
};

[[noreturn]] void fail(HttpError::Case which) {
  throw HttpError(std::move(which));
}

bool hasLineBreak(std::string_view text) noexcept {
  return text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

// One request on its way.
class Call {
 public:
  Call(const HttpRequest& request, const std::string& authorityFile)
      : m_easy(m_curl.easyInit()), m_multi(m_curl.multiInit()) {
    if (!m_easy || !m_multi) fail(HttpError::Failed{"out of memory"});
    setAddress(request);
    setHeaders(request);
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(std::max<std::int64_t>(1, request.timeout.count())));
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (!authorityFile.empty()) set(CURLOPT_CAINFO, authorityFile.c_str());
    set(CURLOPT_WRITEFUNCTION, &Call::receive);
    set(CURLOPT_WRITEDATA, this);
    if (request.method == HttpMethod::post) {
      set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
      set(CURLOPT_POSTFIELDS, request.body.data());
    }
    check(m_curl.multiAddHandle(m_multi.get(), m_easy.get()));
  }
  ~Call() { m_curl.multiRemoveHandle(m_multi.get(), m_easy.get()); }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  HttpResponse carryOut(const std::stop_token& stop) {
    const std::stop_callback wake(stop, [this] { m_curl.multiWakeUp(m_multi.get()); });
    int running = 1;
    while (true) {
      if (stop.stop_requested()) fail(HttpError::Cancelled{});
      check(m_curl.multiPerform(m_multi.get(), &running));
      if (running == 0) break;
      check(m_curl.multiPoll(m_multi.get(), nullptr, 0, maxWait, nullptr));
    }
    finish();
    long status = 0;
    m_curl.easyGetInfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    m_response.status = static_cast<int>(status);
    return std::move(m_response);
  }

 private:
  template <typename Value>
  void set(CURLoption option, Value value) {
    const auto result = m_curl.easySetOption(m_easy.get(), option, value);
    if (result != CURLE_OK) fail(HttpError::Failed{m_curl.easyErrorText(result)});
  }
  void check(CURLMcode result) const {
    if (result != CURLM_OK) fail(HttpError::Failed{m_curl.multiErrorText(result)});
  }

  void setAddress(const HttpRequest& request) {
    const auto url = CurlUrlReader().read(request.url);
    if (!url || (!url->isSecure && !url->isLoopback)) fail(HttpError::UrlRefused{request.url});
    set(CURLOPT_PROTOCOLS_STR, url->isSecure ? "https" : "http");
    set(CURLOPT_URL, url->text.c_str());
    // Requests to this machine never go through a proxy.
    if (request.route == HttpRoute::direct || url->isLoopback) set(CURLOPT_PROXY, "");
  }

  void setHeaders(const HttpRequest& request) {
    const auto append = [&](const std::string& line) {
      auto* longer = m_curl.listAppend(m_headers.get(), line.c_str());
      if (longer == nullptr) fail(HttpError::Failed{"out of memory"});
      static_cast<void>(m_headers.release());
      m_headers.reset(longer);
    };
    if (request.method == HttpMethod::post) append("Content-Type: application/json");
    // A server that would first be asked whether it wants the body only loses time.
    append("Expect:");
    for (const auto& header : request.headers) {
      if (hasLineBreak(header.name) || hasLineBreak(header.value)) fail(HttpError::Failed{"a header has a line break"});
      append(header.name + ": " + header.value);
    }
    set(CURLOPT_HTTPHEADER, m_headers.get());
  }

  static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* call) noexcept {
    auto& self = *static_cast<Call*>(call);
    const auto length = size * count;
    self.m_isTooLarge = self.m_response.body.size() + length > HttpTransport::maxReplyBytes;
    if (self.m_isTooLarge) return 0;
    try {
      self.m_response.body.append(bytes, length);
    } catch (const std::bad_alloc&) {
      return 0;
    }
    return length;
  }

  void finish() {
    int left = 0;
    const auto* message = m_curl.multiReadInfo(m_multi.get(), &left);
    const auto result = message != nullptr ? message->data.result : CURLE_RECV_ERROR;
    if (result == CURLE_OK) return;
    if (m_isTooLarge) fail(HttpError::ReplyTooLarge{});
    if (result == CURLE_OPERATION_TIMEDOUT) fail(HttpError::TimedOut{});
    fail(HttpError::Failed{m_curl.easyErrorText(result)});
  }

  const CurlLibrary& m_curl = CurlLibrary::get();
  std::unique_ptr<CURL, CloseEasy> m_easy;
  std::unique_ptr<CURLM, CloseMulti> m_multi;
  std::unique_ptr<curl_slist, FreeList> m_headers;
  HttpResponse m_response;
  bool m_isTooLarge = false;
};

}  // namespace

HttpResponse CurlTransport::send(const HttpRequest& request, const std::stop_token& stop) {
  return Call(request, m_authorityFile).carryOut(stop);
}

}  // namespace orvane
