#include "app/overview/OverviewModel.h"

#include "app/history/HistoryModel.h"
#include "tests/app/WindowFixture.h"

#include <memory>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

class OverviewModelTest : public WindowFixture {
 public:
  ~OverviewModelTest() override { QCoreApplication::processEvents(); }

  // Items of one category come in, each of a folder and a size.
  void comeIn(ScanCategory category, const std::vector<std::pair<std::string, std::int64_t>>& found) {
    const auto piece = std::make_shared<ItemPiece>();
    std::int64_t bytes = 0;
    for (const auto& [folder, size] : found) {
      FileItem::Fields fields;
      fields.url = tree.url("Downloads/" + folder + "/item " + std::to_string(m_items++));
      fields.fileSize = size;
      fields.category = category;
      piece->emplace_back(std::move(fields));
      bytes += size;
    }
    state.scannedItems().append(piece, bytes);
    EXPECT_TRUE(
        becomesTrue([&] { return sum(overview.areas()) == static_cast<double>(state.scannedItems().bytes()); }));
  }
  static double sum(const QVariantList& areas) {
    double bytes = 0;
    for (const auto& area : areas) bytes += area.toMap()["bytes"].toDouble();
    return bytes;
  }
  static std::vector<std::string> namesOf(const QVariantList& areas, const char* key) {
    std::vector<std::string> names;
    for (const auto& area : areas) names.push_back(area.toMap()[key].toString().toStdString());
    return names;
  }
  [[nodiscard]] std::vector<std::string> categories() const { return namesOf(overview.areas(), "category"); }
  [[nodiscard]] QVariantList parts(int at) const { return overview.areas().at(at).toMap()["children"].toList(); }

  AppState state{services()};
  CleanupModel cleanup{services(), state};
  JournalFeed feed{services()};
  HistoryModel history{services(), feed};
  OverviewModel overview{services(), {.state = state, .cleanup = cleanup, .history = history, .feed = feed}};

 private:
  int m_items = 0;
};

TEST_F(OverviewModelTest, fillsWhileAScanRunsAndNothingChangesPlaces) {
  state.scannedItems().begin({tree.url("Downloads")});
  comeIn(ScanCategory::logs, {{"b", 20}, {"a", 10}});
  comeIn(ScanCategory::largeFiles, {{"c", 5000}});
  comeIn(ScanCategory::logs, {{"a", 900}, {"d", 7}});
  EXPECT_THAT(categories(), ElementsAre("logs", "largeFiles"));
  EXPECT_THAT(namesOf(parts(0), "label"), ElementsAre("b", "a", "d"));

  Q_EMIT state.scanFinished();
  ASSERT_TRUE(becomesTrue([&] { return categories().front() == "largeFiles"; }));
  EXPECT_THAT(namesOf(parts(1), "label"), ElementsAre("a", "b", "d"));
}

TEST_F(OverviewModelTest, leavesNoHoleWhereACategoryHasManyFolders) {
  state.scannedItems().begin({tree.url("Downloads")});
  std::vector<std::pair<std::string, std::int64_t>> found;
  for (int i = 0; i < 30; ++i) found.emplace_back("folder " + std::to_string(i), 100 + i);
  comeIn(ScanCategory::caches, found);
  ASSERT_EQ(parts(0).size(), 9);
  EXPECT_EQ(parts(0).back().toMap()["titleKey"].toString(), "map.other");
  EXPECT_EQ(sum(parts(0)), sum(overview.areas()));
  comeIn(ScanCategory::caches, {{"late", 100'000}});
  EXPECT_EQ(parts(0).back().toMap()["titleKey"].toString(), "map.other") << "what is left stays the last";
}

TEST_F(OverviewModelTest, forgetsWhatWentAndWhatAnEarlierScanFound) {
  state.scannedItems().begin({tree.url("Downloads")});
  comeIn(ScanCategory::logs, {{"a", 10}, {"b", 20}});
  constexpr std::array<std::uint32_t, 1> first{0};
  state.scannedItems().setPresence(first, ScannedItems::Presence::gone);
  ASSERT_TRUE(becomesTrue([&] { return sum(overview.areas()) == 20; }));
  state.scannedItems().begin({tree.url("Downloads")});
  ASSERT_TRUE(becomesTrue([&] { return overview.areas().isEmpty(); }));
  comeIn(ScanCategory::caches, {{"a", 5}});
  EXPECT_THAT(categories(), ElementsAre("caches"));
}

}  // namespace
}  // namespace orvane::test
