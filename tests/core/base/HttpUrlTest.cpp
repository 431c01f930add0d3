#include "core/base/HttpUrl.h"

#include <gtest/gtest.h>

#include <ostream>

namespace orvane {
namespace {

struct Address {
  const char* text;
  const char* host;  // null where it is refused
  bool isLoopback = false;
  const char* written = nullptr;  // null where it is as given
};
void PrintTo(const Address& address, std::ostream* out) {
  *out << address.text;
}
class HttpUrlTest : public testing::TestWithParam<Address> {};

TEST_P(HttpUrlTest, isReadStrictly) {
  const auto& address = GetParam();
  const auto url = HttpUrl::parse(address.text);
  ASSERT_EQ(url.has_value(), address.host != nullptr);
  if (!url) return;
  EXPECT_EQ(url->host, address.host);
  EXPECT_EQ(url->isLoopback(), address.isLoopback);
  EXPECT_EQ(url->text(), address.written != nullptr ? address.written : address.text);
}

INSTANTIATE_TEST_SUITE_P(
    Accepted, HttpUrlTest,
    testing::Values(Address{"https://api.example.com/v1/messages", "api.example.com"},
                    Address{"HTTP://LocalHost:8080", "localhost", true, "http://localhost:8080"},
                    Address{"http://127.0.0.1:11434/v1/", "127.0.0.1", true},
                    Address{"http://127.255.0.9", "127.255.0.9", true}, Address{"http://[::1]:80/x", "::1", true},
                    Address{"http://[0:0:0:0:0:0:0:1]", "0:0:0:0:0:0:0:1", true},
                    // Hosts that only look like this machine.
                    Address{"http://[::ffff:127.0.0.1]", "::ffff:127.0.0.1"}, Address{"http://[fe80::1]", "fe80::1"},
                    Address{"http://localhost.example.com", "localhost.example.com"},
                    Address{"http://127.0.0.1.example.com", "127.0.0.1.example.com"}, Address{"http://127.1", "127.1"},
                    Address{"http://0177.0.0.1", "0177.0.0.1"}, Address{"http://2130706433", "2130706433"},
                    Address{"http://0.0.0.0", "0.0.0.0"}, Address{"http://128.0.0.1", "128.0.0.1"}));

INSTANTIATE_TEST_SUITE_P(
    Refused, HttpUrlTest,
    testing::Values(Address{"", nullptr}, Address{"localhost:80", nullptr}, Address{"ftp://localhost", nullptr},
                    Address{"file:///etc/hosts", nullptr}, Address{"http://", nullptr}, Address{"http:///x", nullptr},
                    Address{"http://user@localhost", nullptr}, Address{"http://localhost@example.com", nullptr},
                    Address{"http://127.0.0.1:80@example.com/", nullptr},
                    Address{"http://127.0.0.1\\@example.com", nullptr},
                    Address{"http://127.0.0.1#@example.com", nullptr}, Address{"http://127.0.0.1?x", nullptr},
                    Address{"http://local host", nullptr}, Address{"http://localhost/a b", nullptr},
                    Address{"http://localhost/\r\nX: y", nullptr}, Address{"http://localhost:", nullptr},
                    Address{"http://localhost:0", nullptr}, Address{"http://localhost:65536", nullptr},
                    Address{"http://localhost:8x", nullptr}, Address{"http://[::1", nullptr},
                    Address{"http://[::1]x", nullptr}, Address{"http://[x]", nullptr}, Address{"http://::1", nullptr}));

}  // namespace
}  // namespace orvane
