#include "app/common/Pictures.h"

#include "app/common/PictureProvider.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/TemporaryTree.h"

#include <QBuffer>
#include <QImage>
#include <QQuickTextureFactory>
#include <QtEndian>

#include <memory>
#include <string>

namespace orvane::test {
namespace {

constexpr QSize pictureRoom(104, 80);

std::string encoded(QSize size, Qt::GlobalColor colour, const char* format = "png") {
  QImage image(size, QImage::Format_RGB32);
  image.fill(colour);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  EXPECT_TRUE(buffer.open(QIODevice::WriteOnly));
  EXPECT_TRUE(image.save(&buffer, format));
  return bytes.toStdString();
}

std::string bigEndian(std::size_t value) {
  QByteArray bytes(4, '\0');
  qToBigEndian(static_cast<quint32>(value), bytes.data());
  return bytes.toStdString();
}

std::string familyOf(std::initializer_list<std::string> pictures) {
  std::string content;
  for (const auto& picture : pictures) content += "ic07" + bigEndian(picture.size() + 8) + picture;
  return "icns" + bigEndian(content.size() + 8) + content;
}

class PicturesTest : public testing::Test {
 public:
  [[nodiscard]] QImage iconFor(const std::string& list, const std::string& name, const std::string& content) {
    tree.file("Paint.app/Contents/Info.plist",
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
              "<key>CFBundleIconFile</key><string>" +
                  list + "</string></dict></plist>");
    tree.file("Paint.app/Contents/Resources/" + name, content);
    return readApplicationIcon(tree.url("Paint.app"), QSize(72, 72));
  }
  TemporaryTree tree;
};

TEST_F(PicturesTest, showsEveryUsualKindOfPictureAtTheSizeOfItsPlace) {
  for (const auto* format : {"png", "jpg", "bmp", "webp", "tiff"}) {
    const auto path = tree.file("picture", encoded(QSize(1200, 600), Qt::red, format));
    const auto image = readThumbnail(FileUrl(path), pictureRoom);
    EXPECT_EQ(image.size(), QSize(160, 80)) << format;
  }
  const auto small = readThumbnail(FileUrl(tree.file("small", encoded(QSize(16, 16), Qt::red))), pictureRoom);
  EXPECT_EQ(small.size(), QSize(16, 16));
}

TEST_F(PicturesTest, showsNothingOfWhatIsNoPicture) {
  auto hugeHead = encoded(QSize(16, 16), Qt::red);
  hugeHead.replace(16, 8, bigEndian(60'000) + bigEndian(60'000));
  const auto whole = encoded(QSize(400, 400), Qt::red, "jpg");
  const auto* drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
  for (const auto& path :
       {tree.pipe("pipe.png"), tree.path("missing.png"), tree.folder("folder.png"), tree.file("text.png", "words"),
        tree.file("empty.png", ""), tree.file("drawing.png", drawing), tree.file("huge.png", hugeHead),
        tree.file("head.jpg", whole.substr(0, 20))}) {
    EXPECT_TRUE(readThumbnail(FileUrl(path), pictureRoom).isNull()) << path;
  }
}

TEST_F(PicturesTest, takesTheIconThatTheBundleNamesWithOrWithoutItsExtension) {
  const auto png = encoded(QSize(128, 128), Qt::blue);
  EXPECT_EQ(iconFor("Paint", "Paint.icns", familyOf({png})).size(), QSize(72, 72));
  EXPECT_EQ(iconFor("Paint.icns", "Paint.icns", familyOf({png})).size(), QSize(72, 72));
  EXPECT_EQ(iconFor("Icon", "Icon.png", png).size(), QSize(72, 72));
  EXPECT_EQ(iconFor("Icon.png", "Icon.png", png).pixelColor(3, 3), QColor(Qt::blue));
}

TEST_F(PicturesTest, takesTheSmallestPictureOfAFamilyThatFillsItsPlace) {
  const auto family = familyOf({encoded(QSize(512, 512), Qt::red), encoded(QSize(16, 16), Qt::green),
                                encoded(QSize(128, 128), Qt::blue), encoded(QSize(256, 256), Qt::yellow)});
  EXPECT_EQ(iconFor("Icon", "Icon.icns", family).pixelColor(3, 3), QColor(Qt::blue));
  const auto small = familyOf({encoded(QSize(16, 16), Qt::green), encoded(QSize(32, 32), Qt::red)});
  EXPECT_EQ(iconFor("Icon", "Icon.icns", small).size(), QSize(32, 32));
}

TEST_F(PicturesTest, hasNoIconWhereTheBundleHasNoneOfItsOwn) {
  const auto png = encoded(QSize(128, 128), Qt::blue);
  tree.file("outside.png", png);
  EXPECT_TRUE(iconFor("../../../outside.png", "Icon.png", png).isNull());
  EXPECT_TRUE(iconFor(tree.path("outside.png"), "Icon.png", png).isNull());
  EXPECT_TRUE(iconFor("Other", "Icon.icns", familyOf({png})).isNull());
  EXPECT_TRUE(iconFor("Broken", "Broken.icns", "icns" + bigEndian(4'000'000'000) + "ic07" + bigEndian(3)).isNull());
  EXPECT_TRUE(iconFor("Cut", "Cut.icns", familyOf({png}).substr(0, 60)).isNull());
  EXPECT_TRUE(readApplicationIcon(tree.url("none.app"), QSize(72, 72)).isNull());
}

class PictureProviderTest : public PicturesTest {
 public:
  // The picture that an Image with this source would show.
  [[nodiscard]] QImage shown(const QString& source) {
    const auto id = source.section(u'/', 3);
    const std::unique_ptr<QQuickImageResponse> response(provider.requestImageResponse(id, pictureRoom));
    bool isFinished = false;
    QObject::connect(response.get(), &QQuickImageResponse::finished, [&] { isFinished = true; });
    EXPECT_TRUE(becomesTrue([&] { return isFinished; }));
    const std::unique_ptr<QQuickTextureFactory> factory(response->textureFactory());
    EXPECT_TRUE(response->errorString().isEmpty());
    return factory ? factory->image() : QImage();
  }
  PictureProvider provider{readThumbnail};
};

TEST_F(PictureProviderTest, handsOutPicturesWhateverTheirNamesAreMadeOf) {
  for (const auto* name : {"plain.png", "a%20b?c#d.png", "\xff\xfe.png", "spaced out/é.png"}) {
    const auto path = tree.file(name, encoded(QSize(200, 200), Qt::red));
    EXPECT_EQ(shown(pictureSource(thumbnailProvider, FileUrl(path))).size(), QSize(104, 104)) << name;
  }
  EXPECT_EQ(shown(pictureSource(thumbnailProvider, tree.url("missing.png"))).size(), QSize(1, 1));
  EXPECT_EQ(shown("image://thumbnail/%%%").size(), QSize(1, 1));
}

TEST_F(PictureProviderTest, outlivesWhoAskedAndIsOutlivedByWhoAsks) {
  auto brief = std::make_unique<PictureProvider>(readThumbnail);
  const auto id =
      pictureSource(thumbnailProvider, FileUrl(tree.file("a.png", encoded(QSize(9, 9), Qt::red)))).section(u'/', 3);
  const std::unique_ptr<QQuickImageResponse> kept(brief->requestImageResponse(id, pictureRoom));
  for (int i = 0; i < 100; ++i) {
    const std::unique_ptr<QQuickImageResponse> dropped(brief->requestImageResponse(id, pictureRoom));
    dropped->cancel();
  }
  brief.reset();
  QCoreApplication::processEvents();
}

}  // namespace
}  // namespace orvane::test
