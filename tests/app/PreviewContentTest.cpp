#include "app/common/PreviewContent.h"

#include "app/common/ItemPreview.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/TemporaryTree.h"

#include <archive.h>
#include <archive_entry.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

using Kind = PreviewContent::Kind;

std::vector<std::string> namesIn(const PreviewContent& content) {
  std::vector<std::string> result;
  for (const auto& entry : content.entries) result.push_back(entry.toStdString());
  return result;
}

class PreviewContentTest : public testing::Test {
 public:
  [[nodiscard]] PreviewContent lookAt(const std::string& path) const { return readPreview(FileUrl(path), {}); }
  // An archive of small files in the form that `setForm` chooses.
  std::string archived(const std::string& name, int (*setForm)(archive*), const std::vector<std::string>& members) {
    const auto path = tree.path(name);
    auto* writer = archive_write_new();
    EXPECT_EQ(setForm(writer), ARCHIVE_OK);
    EXPECT_EQ(archive_write_open_filename(writer, path.c_str()), ARCHIVE_OK);
    for (const auto& member : members) {
      auto* entry = archive_entry_new();
      archive_entry_set_pathname(entry, member.c_str());
      archive_entry_set_size(entry, 4);
      archive_entry_set_filetype(entry, AE_IFREG);
      archive_entry_set_perm(entry, 0644);
      EXPECT_EQ(archive_write_header(writer, entry), ARCHIVE_OK);
      EXPECT_EQ(archive_write_data(writer, "data", 4), 4);
      archive_entry_free(entry);
    }
    archive_write_free(writer);
    return path;
  }
  TemporaryTree tree;
};

TEST_F(PreviewContentTest, tellsTextFromWhatIsNone) {
  const std::string bytes("\177ELF\0\0\1", 7);
  for (const auto& [given, kind, text] :
       Rows<std::string, Kind, QString>{{"Dear all,\n\tgrüße\n", Kind::text, "Dear all,\n\tgrüße\n"},
                                        {"caf\xe9", Kind::text, "café"},
                                        {bytes, Kind::none, ""},
                                        {"", Kind::none, ""}}) {
    const auto content = lookAt(tree.file("item", given));
    EXPECT_EQ(content.kind, kind) << given;
    EXPECT_EQ(content.text, text) << given;
    EXPECT_FALSE(content.isCut) << given;
  }
}

TEST_F(PreviewContentTest, readsOnlyTheBeginningOfALongText) {
  const auto content = lookAt(tree.file("long.log", std::string(3'000'000, 'x')));
  EXPECT_EQ(content.kind, Kind::text);
  EXPECT_EQ(content.text.size(), 64 * 1024);
  EXPECT_TRUE(content.isCut);
  EXPECT_EQ(content.bytes, 3'000'000);
}

TEST_F(PreviewContentTest, listsArchivesOfEveryUsualForm) {
  const std::vector<std::string> members{"notes/one.txt", "two.txt"};
  const auto tarGz = [](archive* writer) {
    archive_write_add_filter_gzip(writer);
    return archive_write_set_format_pax_restricted(writer);
  };
  for (const auto& path : {archived("a.zip", archive_write_set_format_zip, members), archived("a.tgz", +tarGz, members),
                           archived("a.7z", archive_write_set_format_7zip, members)}) {
    const auto content = lookAt(path);
    EXPECT_EQ(content.kind, Kind::archive) << path;
    EXPECT_EQ(namesIn(content), members) << path;
  }
}

TEST_F(PreviewContentTest, showsWhatADamagedArchiveStillTells) {
  std::vector<std::string> members;
  for (int number = 0; number < 40; ++number) members.push_back("member " + std::to_string(number));
  const auto path = archived("cut.tar", archive_write_set_format_ustar, members);
  std::filesystem::resize_file(path, 4 * 1024 + 300);
  const auto content = lookAt(path);
  EXPECT_EQ(content.kind, Kind::archive);
  EXPECT_TRUE(content.isCut);
  EXPECT_EQ(content.entries.front(), "member 0");
}

TEST_F(PreviewContentTest, listsAFolderAndEndsWhereItIsLong) {
  tree.file("folder/b", "");
  tree.file("folder/a", "");
  EXPECT_THAT(namesIn(lookAt(tree.path("folder"))), ElementsAre("a", "b"));
  for (int number = 0; number < 600; ++number) tree.file("many/" + std::to_string(number), "");
  const auto content = lookAt(tree.path("many"));
  EXPECT_EQ(content.entries.size(), 500);
  EXPECT_TRUE(content.isCut);
}

TEST_F(PreviewContentTest, followsNoLinkAndWaitsForNoPipe) {
  EXPECT_EQ(lookAt(tree.link("link.txt", tree.file("target.txt", "text"))).kind, Kind::none);
  EXPECT_EQ(lookAt(tree.pipe("pipe.txt")).kind, Kind::none);
  EXPECT_EQ(lookAt(tree.path("nothing.txt")).kind, Kind::gone);
}

TEST_F(PreviewContentTest, theLastOfManyLooksIsTheOneThatShows) {
  ItemPreview preview{tree.url()};
  for (const auto* name : {"one.txt", "two.txt", "three.txt"}) {
    EXPECT_TRUE(preview.look(QString::fromStdString(tree.file(name, name))));
  }
  ASSERT_TRUE(becomesTrue([&] { return !preview.isReading(); }));
  EXPECT_TRUE(shows(preview, {{"name", "three.txt"}, {"shownPlace", "~/three.txt"}, {"text", "three.txt"}}));
  preview.close();
  EXPECT_FALSE(preview.isOpen());
  EXPECT_FALSE(preview.look(""));
}

}  // namespace
}  // namespace orvane::test
