#include "platform/linux/CurlUrlReader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>

namespace orvane {
namespace {

TEST(CurlUrlReader, tellsAddressesOfThisMachineFromOthers) {
  using Address = std::tuple<std::string_view, const char*, bool>;  // as it is asked for; is it this machine's?
  for (const auto& [text, written, isLoopback] : {
           Address{"https://api.example.com/v1/messages", "https://api.example.com/v1/messages", false},
           Address{"HTTP://LocalHost:8080", "http://LocalHost:8080/", true},
           Address{"http://127.0.0.1:11434/v1/", "http://127.0.0.1:11434/v1/", true},
           Address{"http://127.255.0.9", "http://127.255.0.9/", true},
           Address{"http://[::1]:80/x", "http://[::1]:80/x", true},
           // Hosts that only look like this machine.
           Address{"http://[::ffff:127.0.0.1]", "http://[::ffff:127.0.0.1]/", false},
           Address{"http://[fe80::1]", "http://[fe80::1]/", false},
           Address{"http://localhost.example.com", "http://localhost.example.com/", false},
           Address{"http://localhost.", "http://localhost./", false},
           Address{"http://127.0.0.1.example.com", "http://127.0.0.1.example.com/", false},
           Address{"http://0.0.0.0", "http://0.0.0.0/", false},
           Address{"http://128.0.0.1", "http://128.0.0.1/", false},
       }) {
    const auto url = CurlUrlReader().read(std::string(text));
    ASSERT_TRUE(url.has_value()) << text;
    EXPECT_EQ(url->text, written);
    EXPECT_EQ(url->isLoopback, isLoopback) << text;
    EXPECT_EQ(url->isSecure, text.starts_with("https")) << text;
  }
}

class RefusedAddress : public testing::TestWithParam<const char*> {};

TEST_P(RefusedAddress, isNone) {
  EXPECT_FALSE(CurlUrlReader().read(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Strict, RefusedAddress,
                         testing::Values("", "localhost:80", "ftp://localhost", "file:///etc/hosts", "http://",
                                         "http:///x", "http://user@localhost", "http://localhost@example.com",
                                         "http://127.0.0.1:80@example.com/", "http://127.0.0.1\\@example.com",
                                         "http://127.0.0.1#@example.com", "http://127.0.0.1?x", "http://localhost/?",
                                         "http://local host", "http://localhost/a b", "http://localhost/\r\nX: y",
                                         "http://localhost:", "http://localhost:0", "http://localhost:65536",
                                         "http://localhost:8x", "http://[::1", "http://[::1]x", "http://[x]",
                                         "http://::1", "http://[::1%25lo]", "http://127.1", "http://0177.0.0.1",
                                         "http://2130706433", "http://0x7f.0.0.1", "http://%6cocalhost",
                                         "http:/localhost", "http://[0:0:0:0:0:0:0:1]", "http://localhost:080"));

TEST(CurlUrlReader, refusesWhatEndsBeforeItsEnd) {
  EXPECT_FALSE(CurlUrlReader().read(std::string("http://localhost\0.example.com", 29)));
}

}  // namespace
}  // namespace orvane
