#include "platform/linux/CurlTransport.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/LiveProgram.h"
#include "tests/support/LocalServer.h"
#include "tests/support/TemporaryTree.h"

#include <gmock/gmock.h>

#include <csignal>
#include <thread>

namespace orvane {
namespace {

using test::LocalServer;
using testing::HasSubstr;
using testing::Not;

HttpRequest requestTo(std::string url) {
  HttpRequest request;
  request.url = std::move(url);
  request.body = R"({"a":1})";
  return request;
}

HttpError::Case errorOf(const HttpRequest& request, const std::stop_token& stop = {}) {
  try {
    static_cast<void>(CurlTransport().send(request, stop));
  } catch (const HttpError& error) {
    return error.which();
  }
  ADD_FAILURE() << "it was answered";
  return HttpError::Failed{};
}

TEST(CurlTransport, postsABodyWithHeadersAndTakesTheReplyWhateverItsStatus) {
  const LocalServer server([](const auto&) { return LocalServer::answer(418, "short and stout"); });
  auto request = requestTo(server.url("/pot"));
  request.headers = {{"x-api-key", "secret"}};
  const auto response = CurlTransport().send(request);
  EXPECT_EQ(response.status, 418);
  EXPECT_EQ(response.body, "short and stout");
  const auto got = server.requests().at(0);
  EXPECT_EQ(got.line, "POST /pot HTTP/1.1");
  EXPECT_EQ(got.body, R"({"a":1})");
  EXPECT_THAT(got.headers, HasSubstr("\r\nContent-Type: application/json"));
  EXPECT_THAT(got.headers, HasSubstr("\r\nx-api-key: secret"));
  EXPECT_THAT(got.headers, Not(HasSubstr("Expect")));

  request.method = HttpMethod::get;
  EXPECT_EQ(CurlTransport().send(request).status, 418);
  EXPECT_EQ(server.requests().at(1).line, "GET /pot HTTP/1.1");
  EXPECT_EQ(server.requests().at(1).body, "");
}

TEST(CurlTransport, followsNoRedirection) {
  const LocalServer other([](const auto&) { return LocalServer::answer(200, "stolen"); });
  const LocalServer server(
      [&](const auto&) { return LocalServer::answer(307, "", "Location: " + other.url("/x") + "\r\n"); });
  EXPECT_EQ(CurlTransport().send(requestTo(server.url())).status, 307);
  EXPECT_TRUE(other.requests().empty());
}

TEST(CurlTransport, goesAroundAProxyToReachThisMachine) {
  const LocalServer proxy([](const auto&) { return LocalServer::answer(200, "from the proxy"); });
  const LocalServer server([](const auto&) { return LocalServer::answer(200, "from the server"); });
  const test::ScopedEnvironment environment("http_proxy", proxy.url().c_str());
  EXPECT_EQ(CurlTransport().send(requestTo(server.url())).body, "from the server");
}

TEST(CurlTransport, endsAWholeCallInTime) {
  const LocalServer silent([](const auto&) { return LocalServer::Answer{"", true}; });
  const LocalServer stalling([](const auto&) {
    return LocalServer::Answer{"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nonly so much", true};
  });
  for (const auto* server : {&silent, &stalling}) {
    auto request = requestTo(server->url());
    request.timeout = std::chrono::milliseconds(100);
    EXPECT_EQ(errorOf(request), HttpError::Case{HttpError::TimedOut{}});
  }
}

TEST(CurlTransport, isCancelledWhileItWaits) {
  const LocalServer silent([](const auto&) { return LocalServer::Answer{"", true}; });
  std::stop_source stop;
  std::thread canceller([&] {
    silent.waitForRequests(1);
    stop.request_stop();
  });
  EXPECT_EQ(errorOf(requestTo(silent.url()), stop.get_token()), HttpError::Case{HttpError::Cancelled{}});
  canceller.join();
  EXPECT_EQ(errorOf(requestTo(silent.url()), stop.get_token()), HttpError::Case{HttpError::Cancelled{}});
}

TEST(CurlTransport, takesFourMebibytesAndNotAByteMore) {
  const LocalServer server([](const LocalServer::Request& request) {
    const auto extra = request.line.find("/more") != std::string::npos ? 1U : 0U;
    return LocalServer::answer(200, std::string(HttpTransport::longestReply + extra, 'x'));
  });
  EXPECT_EQ(CurlTransport().send(requestTo(server.url())).body.size(), HttpTransport::longestReply);
  EXPECT_EQ(errorOf(requestTo(server.url("/more"))), HttpError::Case{HttpError::ReplyTooLarge{}});
}

TEST(CurlTransport, refusesWhatIsNotSafe) {
  for (const auto* url : {"http://example.com/", "file:///etc/passwd", "http://localhost@example.com", "nonsense"}) {
    EXPECT_EQ(errorOf(requestTo(url)), HttpError::Case{HttpError::UrlRefused{url}});
  }
  auto request = requestTo("http://127.0.0.1:1/");
  EXPECT_TRUE(std::holds_alternative<HttpError::Failed>(errorOf(request))) << "nothing listens there";
  request.headers = {{"x-api-key", "a\r\nInjected: b"}};
  EXPECT_TRUE(std::holds_alternative<HttpError::Failed>(errorOf(request)));
}

TEST(CurlTransport, doesNotTrustAServerThatNobodyVouchesFor) {
  const test::TemporaryTree tree;
  const auto key = tree.path("key.pem");
  const auto certificate = tree.path("certificate.pem");
  ASSERT_EQ(test::runProgram({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
                              "-nodes", "-subj", "/CN=localhost", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout",
                              key, "-out", certificate})
                .exitStatus,
            0);
  std::string address;
  {
    const LocalServer port([](const auto&) { return LocalServer::Answer{}; });
    address = port.url().substr(std::string_view("http://").size());
  }
  test::LiveProgram server(
      {.arguments = {"/usr/bin/openssl", "s_server", "-accept", address, "-www", "-key", key, "-cert", certificate},
       .environment = {}});
  server.waitForOutput("ACCEPT");
  const auto error = errorOf(requestTo("https://" + address));
  ASSERT_TRUE(std::holds_alternative<HttpError::Failed>(error));
  EXPECT_THAT(std::get<HttpError::Failed>(error).reason, HasSubstr("certificate"));
  server.signal(SIGTERM);
}

TEST(CurlTransport, servesManyThreadsAtOnce) {
  const LocalServer server([](const auto& request) { return LocalServer::answer(200, request.body); });
  CurlTransport transport;
  std::vector<std::thread> threads;
  std::atomic<int> right = 0;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&, i] {
      auto request = requestTo(server.url());
      request.body = std::to_string(i);
      if (transport.send(request).body == request.body) ++right;
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(right, 8);
}

}  // namespace
}  // namespace orvane
