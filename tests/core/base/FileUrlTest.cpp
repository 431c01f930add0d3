#include "core/base/files/FileUrl.h"
#include "core/base/files/PathText.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(FileUrl, everyByteSurvivesTheUrlForm) {
  std::string path = "/";
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '/') path.push_back(static_cast<char>(byte));
  }
  const FileUrl url(path);
  const auto text = url.absoluteString();
  EXPECT_EQ(FileUrl::fromAbsoluteString(text), url);
  for (const char c : text) EXPECT_TRUE(c > ' ' && c < 0x7f) << text;
}

TEST(FileUrl, refusesWhatIsNoFileUrl) {
  for (const char* text : {"", "/plain/path", "http://host/x", "file:relative", "file://host/x", "file:///bad%4",
                           "file:///bad%zz", "file:///nul%00byte"}) {
    EXPECT_FALSE(FileUrl::fromAbsoluteString(text)) << text;
  }
  EXPECT_EQ(FileUrl::fromAbsoluteString("file://localhost/a%20b")->path(), "/a b");
}

struct NameCase {
  const char* name;
  const char* base;
  const char* extension;
};
class SplitName : public testing::TestWithParam<NameCase> {};

TEST_P(SplitName, cutsAtTheLastDot) {
  const auto& [name, base, extension] = GetParam();
  EXPECT_EQ(splitName(name).base, base);
  EXPECT_EQ(splitName(name).extension, extension);
}
INSTANTIATE_TEST_SUITE_P(Names, SplitName,
                         testing::Values(NameCase{"report.pdf", "report", "pdf"},
                                         NameCase{"archive.tar.gz", "archive.tar", "gz"},
                                         NameCase{".bashrc", ".bashrc", ""}, NameCase{"Dr. Smith", "Dr. Smith", ""},
                                         NameCase{"p.pdf ", "p.pdf ", ""}, NameCase{"...x", "...x", ""},
                                         NameCase{".Notes.icloud", ".Notes", "icloud"}, NameCase{"end.", "end.", ""},
                                         NameCase{"none", "none", ""}, NameCase{"", "", ""}));

TEST(PathText, comparesWholeComponents) {
  EXPECT_TRUE(isSameOrInside("/a/b", "/a/b"));
  EXPECT_TRUE(isSameOrInside("/a/b/c", "/a/b"));
  EXPECT_FALSE(isSameOrInside("/a/bc", "/a/b"));
  EXPECT_TRUE(isSameOrInside("/a", "/"));
  EXPECT_FALSE(isSameOrInside("/a", ""));
}

TEST(PathText, standardizesByTextAlone) {
  EXPECT_EQ(standardizedPath("//a/./b/../c//"), "/a/c");
  EXPECT_EQ(standardizedPath("/../.."), "/");
  EXPECT_EQ(standardizedPath("../a/../../b"), "../../b");
}

}  // namespace
}  // namespace orvane
