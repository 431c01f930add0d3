#include "core/assistant/records/MetadataOnlyRequest.h"

#include "core/base/text/Json.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

FileMetadataEntry entry(std::string name) {
  FileMetadataEntry entry;
  entry.filename = std::move(name);
  entry.relativeFolderPath = "Documents";
  return entry;
}

TEST(MetadataOnlyRequest, keepsItsFormInJson) {
  auto dated = entry("a.txt");
  dated.fileExtension = "txt";
  dated.sizeBytes = 7;
  dated.createdDate = dateFromReferenceSeconds(1.25);
  dated.modifiedDate = dateFromReferenceSeconds(2);
  dated.lastAccessDate = dateFromReferenceSeconds(3);
  const MetadataOnlyRequest request{.userPrompt = "p", .files = {dated, entry("b")}, .targetFolders = {"Downloads"}};
  const auto json = request.toJson();
  EXPECT_EQ(jsonText(json),
            R"({"userPrompt":"p","files":[{"id":")" + dated.id.toString() +
                R"(","filename":"a.txt","fileExtension":"txt","sizeBytes":7,"createdDate":1.25,"modifiedDate":2,)"
                R"("lastAccessDate":3,"relativeFolderPath":"Documents"},{"id":")" +
                request.files[1].id.toString() +
                R"(","filename":"b","fileExtension":"","sizeBytes":0,"relativeFolderPath":"Documents"}],)"
                R"("targetFolders":["Downloads"]})");
  EXPECT_EQ(MetadataOnlyRequest::fromJson(json), request);

  auto withNull = json;
  withNull["files"][0]["createdDate"] = nullptr;
  EXPECT_FALSE(MetadataOnlyRequest::fromJson(withNull).files[0].createdDate);
  for (const char* key : {"userPrompt", "files", "targetFolders"}) {
    auto broken = json;
    broken.erase(key);
    EXPECT_THROW(static_cast<void>(MetadataOnlyRequest::fromJson(broken)), JsonError) << key;
  }
  for (const char* key : {"id", "filename", "fileExtension", "sizeBytes", "relativeFolderPath"}) {
    auto broken = json;
    broken["files"][1].erase(key);
    EXPECT_THROW(static_cast<void>(MetadataOnlyRequest::fromJson(broken)), JsonError) << key;
  }
}

TEST(MetadataOnlyRequest, isALineForEachFile) {
  EXPECT_EQ((MetadataOnlyRequest{.userPrompt = "tidy", .files = {}, .targetFolders = {"x"}}.userMessage()),
            "User goal: tidy\nCandidate sample files:\n");
  EXPECT_EQ((MetadataOnlyRequest{.userPrompt = "", .files = {entry("notes"), entry("{}")}, .targetFolders = {}}
                 .userMessage()),
            "User goal: \nCandidate sample files:\nnotes (ext: , size: 0, folder: Documents)\n"
            "{} (ext: , size: 0, folder: Documents)");
}

}  // namespace
}  // namespace orvane::test
