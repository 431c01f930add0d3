#include "platform/linux/CurlUrlReader.h"

#include <gtest/gtest.h>

#include <ostream>

namespace orvane {
namespace {

struct Address {
  const char* text;
  const char* written;  // as it is asked for; null where it is refused
  bool isLoopback = false;
};
void PrintTo(const Address& address, std::ostream* out) {
  *out << address.text;
}
class CurlUrlReaderTest : public testing::TestWithParam<Address> {};

TEST_P(CurlUrlReaderTest, isStrict) {
  const auto& address = GetParam();
  const auto url = CurlUrlReader().read(address.text);
  ASSERT_EQ(url.has_value(), address.written != nullptr);
  if (!url) return;
  EXPECT_EQ(url->text, address.written);
  EXPECT_EQ(url->isLoopback, address.isLoopback);
  EXPECT_EQ(url->isSecure, std::string_view(address.text).starts_with("https"));
}

INSTANTIATE_TEST_SUITE_P(
    Accepted, CurlUrlReaderTest,
    testing::Values(Address{"https://api.example.com/v1/messages", "https://api.example.com/v1/messages"},
                    Address{"HTTP://LocalHost:8080", "http://LocalHost:8080/", true},
                    Address{"http://127.0.0.1:11434/v1/", "http://127.0.0.1:11434/v1/", true},
                    Address{"http://127.255.0.9", "http://127.255.0.9/", true},
                    Address{"http://[::1]:80/x", "http://[::1]:80/x", true},
                    // Hosts that only look like this machine.
                    Address{"http://[::ffff:127.0.0.1]", "http://[::ffff:127.0.0.1]/"},
                    Address{"http://[fe80::1]", "http://[fe80::1]/"},
                    Address{"http://localhost.example.com", "http://localhost.example.com/"},
                    Address{"http://localhost.", "http://localhost./"},
                    Address{"http://127.0.0.1.example.com", "http://127.0.0.1.example.com/"},
                    Address{"http://0.0.0.0", "http://0.0.0.0/"}, Address{"http://128.0.0.1", "http://128.0.0.1/"}));

INSTANTIATE_TEST_SUITE_P(
    Refused, CurlUrlReaderTest,
    testing::Values(Address{"", nullptr}, Address{"localhost:80", nullptr}, Address{"ftp://localhost", nullptr},
                    Address{"file:///etc/hosts", nullptr}, Address{"http://", nullptr}, Address{"http:///x", nullptr},
                    Address{"http://user@localhost", nullptr}, Address{"http://localhost@example.com", nullptr},
                    Address{"http://127.0.0.1:80@example.com/", nullptr},
                    Address{"http://127.0.0.1\\@example.com", nullptr},
                    Address{"http://127.0.0.1#@example.com", nullptr}, Address{"http://127.0.0.1?x", nullptr},
                    Address{"http://localhost/?", nullptr}, Address{"http://local host", nullptr},
                    Address{"http://localhost/a b", nullptr}, Address{"http://localhost/\r\nX: y", nullptr},
                    Address{"http://localhost:", nullptr}, Address{"http://localhost:0", nullptr},
                    Address{"http://localhost:65536", nullptr}, Address{"http://localhost:8x", nullptr},
                    Address{"http://[::1", nullptr}, Address{"http://[::1]x", nullptr}, Address{"http://[x]", nullptr},
                    Address{"http://::1", nullptr}, Address{"http://[::1%25lo]", nullptr},
                    // Other ways to write an address of this machine.
                    Address{"http://127.1", nullptr}, Address{"http://0177.0.0.1", nullptr},
                    Address{"http://2130706433", nullptr}, Address{"http://0x7f.0.0.1", nullptr},
                    Address{"http://%6cocalhost", nullptr}, Address{"http:/localhost", nullptr},
                    Address{"http://[0:0:0:0:0:0:0:1]", nullptr}, Address{"http://localhost:080", nullptr}));

TEST(CurlUrlReader, refusesWhatEndsBeforeItsEnd) {
  EXPECT_FALSE(CurlUrlReader().read(std::string("http://localhost\0.example.com", 29)));
}

}  // namespace
}  // namespace orvane
