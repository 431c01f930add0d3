#include "cli/frame/ProgressLine.h"
#include "cli/frame/RunReference.h"
#include "cli/frame/UsageError.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/scanning/records/ScanEvent.h"
#include "core/scanning/records/ScanEventText.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane::cli {
namespace {

FileItem itemAt(const std::string& path, Date date, std::optional<Date> opened) {
  FileItem::Fields fields;
  fields.url = FileUrl(path);
  fields.fileSize = 1234;
  fields.createdDate = date;
  fields.lastModifiedDate = date;
  fields.lastOpenedDate = opened;
  fields.isCloudPlaceholder = opened.has_value();
  return FileItem(std::move(fields));
}

TEST(ScanJson, writesAnItemAsItsRecordDoes) {
  for (const std::string path :
       {"/plain", "/with \"quotes\" and \\", "/new\nline\t\x01\x7f", "/\xC3\xA4\xE2\x82\xAC", "/\xFF\xC3"}) {
    for (const double seconds : {0.0, -0.5, 816934240.0445255, 1e15, 1e300, 5e-324, -978307200.0}) {
      const auto date = dateFromReferenceSeconds(seconds);
      for (const auto& opened : {std::optional<Date>(date), std::optional<Date>()}) {
        const auto item = itemAt(path, date, opened);
        std::string line;
        appendScanEvent(line, item);
        const auto event = parseJson(line);
        EXPECT_EQ(event["event"], "itemDiscovered");
        // Compared as texts, which keeps the order of the keys; a whole number may be written as either type.
        EXPECT_EQ(FileItem::fromJson(event["item"]).toJson().dump(), parseJson(jsonText(item.toJson())).dump()) << line;
        EXPECT_EQ(event["item"].size(), item.toJson().size());
      }
    }
  }
}

TEST(ScanJson, writesTheOtherEvents) {
  std::string lines;
  appendScanEvent(lines, ScanProgress{100, 5, "a\"b"});
  appendScanEvent(lines, ScanCompleted{2, 3});
  appendScanEvent(lines, ScanCancelled{});
  EXPECT_EQ(lines,
            "{\"event\":\"progress\",\"itemsScanned\":100,\"bytesFound\":5,\"currentPath\":\"a\\\"b\"}\n"
            "{\"event\":\"completed\",\"totalItems\":2,\"totalBytes\":3}\n"
            "{\"event\":\"cancelled\"}\n");
}

TEST(ProgressLine, cutsAtWholeCharactersAndColumns) {
  EXPECT_EQ(fittedTo("short", 5), "short");
  EXPECT_EQ(fittedTo("longer", 5), "long…");
  EXPECT_EQ(fittedTo("äöüäöü", 4), "äöü…");
  // Two columns each.
  EXPECT_EQ(fittedTo("漢字漢字", 5), "漢字…");
  for (int columns = 1; columns < 12; ++columns) {
    const auto text = fittedTo("a漢é\u0301字xyz漢", columns);
    EXPECT_LE(displayWidth(text), columns);
    EXPECT_TRUE(isValidUtf8(text));
  }
}

TEST(RunReference, showsAsManyDigitsAsTellTheRunsApart) {
  const auto run = [](const char* id) {
    CleanupRunSummary summary;
    summary.runId = Uuid::parse(id).value();
    return summary;
  };
  const std::vector<CleanupRunSummary> apart{run("AAAAAAAA-0000-4000-8000-000000000001"),
                                             run("BAAAAAAA-0000-4000-8000-000000000001")};
  EXPECT_EQ(distinctPrefixLength(apart), 8);
  const std::vector<CleanupRunSummary> close{run("AAAAAAAA-0010-4000-8000-000000000001"),
                                             run("AAAAAAAA-0020-4000-8000-000000000001")};
  EXPECT_EQ(distinctPrefixLength(close), 12);
  EXPECT_EQ(runMeantBy("aaaaaaaa-002", close).runId, close[1].runId);
  EXPECT_THROW(static_cast<void>(runMeantBy("aaaaaaaa-00", close)), UsageError);
}

}  // namespace
}  // namespace orvane::cli
