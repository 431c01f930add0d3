// Of the port's reader, and in a program of its own of the one that a new port can begin with.

#include "core/base/files/DirectoryReader.h"
#include "tests/support/TemporaryTree.h"

#include <cerrno>

namespace orvane::test {
namespace {

using Links = DirectoryReader::Links;

TEST(DirectoryReader, tellsTheTypeOfEveryEntry) {
  const TemporaryTree tree;
  tree.file("file", "text");
  tree.file(".hidden", "");
  tree.folder("folder");
  tree.link("link", "nowhere");
  tree.pipe("pipe");

  std::map<std::string, FileType> found;
  auto reader = DirectoryReader::open(AT_FDCWD, tree.path().c_str(), Links::refuse);
  ASSERT_TRUE(reader);
  while (const auto entry = reader->next()) {
    EXPECT_TRUE(readFileStatus(reader->descriptor(), entry->nameBytes())) << entry->name;
    found.emplace(entry->name, entry->type);
  }
  EXPECT_FALSE(reader->next());
  EXPECT_EQ(found, (std::map<std::string, FileType>{{".hidden", FileType::regular},
                                                    {"file", FileType::regular},
                                                    {"folder", FileType::directory},
                                                    {"link", FileType::symbolicLink},
                                                    {"pipe", FileType::other}}));
}

TEST(DirectoryReader, readsEachEntryOfALargeFolderOnce) {
  const TemporaryTree tree;
  std::set<std::string> names;
  for (std::size_t i = 0; i < 500; ++i) {
    // Every length up to the longest, so that records end everywhere in a block.
    const auto number = std::to_string(i);
    names.insert(number + std::string(i % (256 - number.size()), 'x'));
  }
  for (const auto& name : names) tree.file(name, "");

  std::multiset<std::string> found;
  auto reader = DirectoryReader::open(AT_FDCWD, tree.path().c_str(), Links::refuse);
  ASSERT_TRUE(reader);
  while (const auto entry = reader->next()) found.emplace(entry->nameBytes());
  EXPECT_EQ(found, std::multiset<std::string>(names.begin(), names.end()));
}

TEST(DirectoryReader, refusesWhatIsNoFolder) {
  const TemporaryTree tree;
  const auto file = tree.file("file", "text");
  tree.folder("folder");
  tree.link("link", "folder");

  EXPECT_FALSE(DirectoryReader::open(AT_FDCWD, file.c_str(), Links::follow));
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_FALSE(DirectoryReader::open(AT_FDCWD, tree.path("nothing").c_str(), Links::follow));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_TRUE(DirectoryReader::open(AT_FDCWD, tree.path("link").c_str(), Links::follow));
  EXPECT_FALSE(DirectoryReader::open(AT_FDCWD, tree.path("link").c_str(), Links::refuse));
  EXPECT_FALSE(DirectoryReader::from(FileDescriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC))));
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_FALSE(DirectoryReader::from(FileDescriptor()));
}

}  // namespace
}  // namespace orvane::test
