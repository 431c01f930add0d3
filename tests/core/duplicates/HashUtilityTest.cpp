#include "core/base/values/Sha256.h"
#include "core/duplicates/HashUtility.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

constexpr auto emptyDigest = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

std::string digestOf(std::string_view text) {
  Sha256 hash;
  hash.update(std::as_bytes(std::span(text)));
  return digestText(hash.finish());
}

// Every byte tells where it is.
std::string pattern(std::size_t size) {
  std::string text(size, '\0');
  for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 31 + i / 251);
  return text;
}

TEST(Sha256, knowsPublishedDigests) {
  EXPECT_EQ(digestOf(""), emptyDigest);
  EXPECT_EQ(digestOf("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(digestOf(std::string(1'000'000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, goesOnFromACopy) {
  Sha256 hash;
  hash.update(std::as_bytes(std::span(std::string_view("ab"))));
  Sha256 copy(hash);
  copy.update(std::as_bytes(std::span(std::string_view("c"))));
  EXPECT_EQ(digestText(copy.finish()), digestOf("abc"));
  EXPECT_EQ(digestText(hash.finish()), digestOf("ab"));
  EXPECT_EQ(digestText(hash.finish()), emptyDigest) << "starts anew";
}

TEST(HashUtility, readsTheEndsThatTheSizeTells) {
  using Hashed = std::string (*)(const std::string& text);
  const Hashed head = [](const std::string& text) { return text.substr(0, 16384); };
  const Hashed headAndTail = [](const std::string& text) {
    return text.substr(0, 16384) + text.substr(text.size() - 16384);
  };
  const Hashed headAndFrom17232 = [](const std::string& text) { return text.substr(0, 16384) + text.substr(17232); };
  const Rows<std::size_t, std::int64_t, Hashed> rows{
      {0, 0, head},
      {1, 1, head},
      {16384, 16384, head},
      {16385, 16385, head},
      {32768, 32768, head},
      {32769, 32769, headAndTail},
      {200'000, 200'000, headAndTail},
      // The size told decides, not the file's.
      {200'000, 32768, head},
      {20'000, 33'616, headAndFrom17232},
      {20'000, 1'000'000, head},
      {20'000, INT64_MAX, head},
  };
  const TemporaryTree tree;
  for (const auto& [size, told, hashed] : rows) {
    const auto content = pattern(size);
    const FileUrl url(tree.file("file", content));
    EXPECT_EQ(HashUtility::computePartialHash(url, told), digestOf(hashed(content))) << size << " told " << told;
    EXPECT_EQ(HashUtility::computeFullHash(url), digestOf(content));
  }
}

TEST(HashUtility, knowsNothingOfWhatItCannotOpen) {
  const TemporaryTree tree;
  const auto fifo = tree.pipe("fifo");
  for (const auto& path : {tree.path("missing"), tree.folder("folder"), fifo, tree.link("dangling", "nowhere")}) {
    EXPECT_EQ(HashUtility::computePartialHash(FileUrl(path), 10), std::nullopt) << path;
    EXPECT_EQ(HashUtility::computeFullHash(FileUrl(path)), std::nullopt) << path;
  }
}

}  // namespace
}  // namespace orvane::test
