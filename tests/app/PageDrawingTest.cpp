#include "app/common/PageDrawing.h"

#include "app/common/PreviewContent.h"
#include "tests/support/TemporaryTree.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {
namespace {

constexpr QSize pageRoom(300, 300);

// A document of one page, as high as it is wide by half, with this content.
std::string pageWith(std::string_view content, std::string_view size = "200 400") {
  const std::string objects[]{"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                              fmt::format("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 {}] /Contents 4 0 R >>", size),
                              fmt::format("<< /Length {} >>\nstream\n{}\nendstream", content.size(), content)};
  std::string document = "%PDF-1.4\n";
  std::string places;
  int number = 0;
  for (const auto& object : objects) {
    places += fmt::format("{:010} 00000 n \n", document.size());
    document += fmt::format("{} 0 obj\n{}\nendobj\n", ++number, object);
  }
  const auto table = document.size();
  return document +
         fmt::format("xref\n0 5\n0000000000 65535 f \n{}trailer\n<< /Size 5 /Root 1 0 R >>\nstartxref\n{}\n%%EOF\n",
                     places, table);
}

class PageDrawingTest : public testing::Test {
 public:
  [[nodiscard]] std::string script(const std::string& command) {
    const auto path = tree.file("program", "#!/bin/sh\n" + command + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  }
  TemporaryTree tree;
  PageReader reader{ORVANE_PROGRAM};
};

TEST_F(PageDrawingTest, drawsTheFirstPageOnWhiteAtTheSizeOfItsPlace) {
  // Red in the upper half.
  const auto item = tree.url("report.PDF");
  tree.file("report.PDF", pageWith("1 0 0 rg 0 200 200 200 re f"));
  EXPECT_EQ(readPreview(item, {}).kind, PreviewContent::Kind::picture);
  const auto page = reader.read(item, pageRoom);
  ASSERT_EQ(page.size(), QSize(150, 300));
  EXPECT_EQ(page.pixelColor(75, 60), QColor(Qt::red));
  EXPECT_EQ(page.pixelColor(75, 240), QColor(Qt::white));
}

TEST_F(PageDrawingTest, drawsNothingOfWhatIsNoDocument) {
  const auto whole = pageWith("");
  const auto* drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
  for (const auto& path :
       {tree.pipe("pipe.pdf"), tree.path("missing.pdf"), tree.folder("folder.pdf"), tree.file("empty.pdf", ""),
        tree.file("text.pdf", "words"), tree.file("cut.pdf", whole.substr(0, 80)), tree.file("drawing.pdf", drawing)}) {
    EXPECT_TRUE(reader.read(FileUrl(path), pageRoom).isNull()) << path;
  }
}

TEST_F(PageDrawingTest, drawsAPageThatIsOutOfAllProportion) {
  const auto path = tree.file("wide.pdf", pageWith("1 0 0 rg 0 0 9000000 90 re f", "9000000 90"));
  const auto page = reader.read(FileUrl(path), pageRoom);
  EXPECT_LE(page.width(), pageRoom.width());
  EXPECT_LE(page.height(), pageRoom.height());
}

TEST_F(PageDrawingTest, waitsForNoPageThatTakesLongAndTakesNoneThatNeverEnds) {
  const auto item = FileUrl(tree.file("report.pdf", pageWith("")));
  // Its end would come after the test's.
  EXPECT_TRUE((PageReader{script("exec sleep 3600"), std::chrono::milliseconds(100)}.read(item, pageRoom).isNull()));
  EXPECT_TRUE(PageReader{script("exec cat /dev/zero")}.read(item, pageRoom).isNull());
  EXPECT_TRUE(PageReader{tree.path("missing")}.read(item, pageRoom).isNull());
}

}  // namespace
}  // namespace orvane::test
