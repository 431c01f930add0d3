#include "platform/linux/CurlTransport.h"

#include "platform/linux/CurlUrlReader.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LiveProgram.h"
#include "tests/support/LocalServer.h"
#include "tests/support/TemporaryTree.h"

#include <csignal>

namespace orvane::test {
namespace {

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
  const ScopedEnvironment environment("http_proxy", proxy.url().c_str());
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
    return LocalServer::answer(200, std::string(HttpTransport::maxReplyBytes + extra, 'x'));
  });
  EXPECT_EQ(CurlTransport().send(requestTo(server.url())).body.size(), HttpTransport::maxReplyBytes);
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

// A server at 127.0.0.1 with a certificate of an authority of the test's own.
class SecureServer {
 public:
  SecureServer() {
    const std::vector<std::string> newKey{"openssl", "req", "-x509",    "-nodes",
                                          "-newkey", "ec",  "-pkeyopt", "ec_paramgen_curve:P-256"};
    const auto make = [&](std::vector<std::string> rest) {
      auto words = newKey;
      words.insert(words.end(), rest.begin(), rest.end());
      EXPECT_EQ(runProgram(words).exitStatus, 0);
    };
    make({"-subj", "/CN=Authority", "-keyout", tree.path("ca.key"), "-out", authority});
    make({"-subj", "/CN=localhost", "-addext", "subjectAltName=IP:127.0.0.1", "-addext", "basicConstraints=CA:FALSE",
          "-CA", authority, "-CAkey", tree.path("ca.key"), "-keyout", tree.path("key"), "-out", tree.path("cert")});
    {
      const LocalServer port([](const auto&) { return LocalServer::Answer{}; });
      address = port.url().substr(std::string_view("http://").size());
    }
    server.emplace(LiveProgram::Setup{.arguments = {"/usr/bin/openssl", "s_server", "-accept", address, "-www", "-key",
                                                    tree.path("key"), "-cert", tree.path("cert")},
                                      .environment = {}});
    server->waitForOutput("ACCEPT");
  }
  ~SecureServer() { server->signal(SIGTERM); }
  SecureServer(const SecureServer&) = delete;
  SecureServer& operator=(const SecureServer&) = delete;

  const TemporaryTree tree;
  const std::string authority = tree.path("ca.pem");
  std::string address;
  std::optional<LiveProgram> server;
};

TEST(CurlTransport, trustsOnlyServersThatAnAuthorityVouchesFor) {
  const SecureServer server;
  auto request = requestTo("https://" + server.address);
  const auto error = errorOf(request);
  ASSERT_TRUE(std::holds_alternative<HttpError::Failed>(error));
  EXPECT_THAT(std::get<HttpError::Failed>(error).reason, HasSubstr("certificate"));

  request.method = HttpMethod::get;
  const auto response = CurlTransport(server.authority).send(request);
  EXPECT_EQ(response.status, 200);
  EXPECT_THAT(response.body, HasSubstr("TLSv1.3"));
  // Its certificate is for another name.
  request.url = "https://localhost" + server.address.substr(server.address.find(':'));
  EXPECT_THROW(static_cast<void>(CurlTransport(server.authority).send(request)), HttpError);
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

TEST(CurlUrlReader, tellsAddressesOfThisMachineFromOthers) {
  // as it is asked for; is it this machine's?
  const Rows<std::string_view, const char*, bool> rows{
      {"https://api.example.com/v1/messages", "https://api.example.com/v1/messages", false},
      {"HTTP://LocalHost:8080", "http://LocalHost:8080/", true},
      {"http://127.0.0.1:11434/v1/", "http://127.0.0.1:11434/v1/", true},
      {"http://127.255.0.9", "http://127.255.0.9/", true},
      {"http://[::1]:80/x", "http://[::1]:80/x", true},
      // Hosts that only look like this machine.
      {"http://[::ffff:127.0.0.1]", "http://[::ffff:127.0.0.1]/", false},
      {"http://[fe80::1]", "http://[fe80::1]/", false},
      {"http://localhost.example.com", "http://localhost.example.com/", false},
      {"http://localhost.", "http://localhost./", false},
      {"http://127.0.0.1.example.com", "http://127.0.0.1.example.com/", false},
      {"http://0.0.0.0", "http://0.0.0.0/", false},
      {"http://128.0.0.1", "http://128.0.0.1/", false},
  };
  for (const auto& [text, written, isLoopback] : rows) {
    const auto url = CurlUrlReader().read(std::string(text));
    ASSERT_TRUE(url.has_value()) << text;
    EXPECT_EQ(url->text, written);
    EXPECT_EQ(url->isLoopback, isLoopback) << text;
    EXPECT_EQ(url->isSecure, text.starts_with("https")) << text;
  }
}

TEST(CurlUrlReader, isStrict) {
  auto refused = words(R"(localhost:80 ftp://localhost file:///etc/hosts http:// http:///x http://user@localhost
      http://localhost@example.com http://127.0.0.1:80@example.com/ http://127.0.0.1\@example.com
      http://127.0.0.1#@example.com http://127.0.0.1?x http://localhost/? http://localhost: http://localhost:0
      http://localhost:65536 http://localhost:8x http://[::1 http://[::1]x http://[x] http://::1 http://[::1%25lo]
      http://127.1 http://0177.0.0.1 http://2130706433 http://0x7f.0.0.1 http://%6cocalhost http:/localhost
      http://[0:0:0:0:0:0:0:1] http://localhost:080)");
  for (const auto* text : {"", "http://local host", "http://localhost/a b", "http://localhost/\r\nX: y"}) {
    refused.emplace_back(text);
  }
  refused.emplace_back("http://localhost\0.example.com", 29);
  for (const auto& address : refused) EXPECT_FALSE(CurlUrlReader().read(address)) << address;
}

}  // namespace
}  // namespace orvane::test
