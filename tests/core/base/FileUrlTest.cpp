#include "core/base/files/FileUrl.h"
#include "core/base/files/PathText.h"
#include "tests/support/Testing.h"

namespace orvane::test {
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

TEST(SplitName, cutsAtTheLastDot) {
  const Rows<const char*, const char*, const char*> names{
      {"report.pdf", "report", "pdf"},
      {"archive.tar.gz", "archive.tar", "gz"},
      {".bashrc", ".bashrc", ""},
      {"Dr. Smith", "Dr. Smith", ""},
      {"p.pdf ", "p.pdf ", ""},
      {"...x", "...x", ""},
      {".Notes.icloud", ".Notes", "icloud"},
      {"end.", "end.", ""},
      {"none", "none", ""},
      {"", "", ""},
  };
  for (const auto& [name, base, extension] : names) {
    EXPECT_EQ(splitName(name).base, base);
    EXPECT_EQ(splitName(name).extension, extension) << name;
  }
}

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
}  // namespace orvane::test
