#include "tests/cli/OrvanectlFixture.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace orvane::test {
namespace {

// A line of a table: a request, and the plan that a person means by it.
struct TableRow {
  std::string kind;
  std::string request;
  // "trash ~/Downloads screenshots 30d 200M": the step's action, folder, categories, age and size; "move" likewise; of
  // several folders "~/Downloads,~/Desktop", a step for each;
  // "place pip npm": exactly the places of these; "room restore": the section that does it, with the name or folder
  // that it begins with where the table names it; "nothing": the request cannot be planned, or must not be.
  std::string meant;
};

std::vector<TableRow> tableRows(const std::string& path) {
  std::vector<TableRow> rows;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::istringstream cells(line);
    TableRow row;
    std::string language;
    std::getline(cells, language, '|');
    std::getline(cells, row.kind, '|');
    std::getline(cells, row.request, '|');
    std::getline(cells, row.meant);
    rows.push_back(std::move(row));
  }
  return rows;
}

// A home in which nearly every plan would select something.
class RequestTable : public Orvanectl, public testing::WithParamInterface<const char*> {
 public:
  RequestTable() {
    constexpr std::int64_t large = 6'000'000'000;
    for (const auto* folder : {"Downloads", "Desktop", "Documents", "Pictures", "Library/Caches", "Library/Logs"}) {
      for (const auto* name : {"server.log", "setup.dmg", "Screenshot 1.png", "big.bin"}) {
        setAge(home.sparseFile(std::string(folder) + "/" + name, large), 800 * day);
      }
      grants.push_back(home.path(folder));
    }
    for (const auto& place :
         wordsOf(R"(.cache/pip/a .npm/_cacache/a .npm/_logs/a .config/discord/Cache/a .config/Slack/Cache/a
        .cache/google-chrome/a .config/google-chrome/Default/Cache/a .cache/mozilla/a .cache/chromium/a
        .cache/yarn/a .cargo/registry/cache/a .cache/ccache/a .cache/thumbnails/a .config/Code/CachedData/a
        .cache/spotify/a .local/share/Steam/appcache/httpcache/a .gradle/caches/a
        .cache/huggingface/hub/models--a--b/a .cache/unheard-of/a
        .local/share/TelegramDesktop/tdata/user_data/cache/a Documents/app/node_modules/a
        Documents/app/package.json Documents/app/__pycache__/a Documents/app/Cargo.toml
        Documents/app/target/a Documents/app/venv/pyvenv.cfg)")) {
      setAge(home.file(place), 400 * day);
    }
    EXPECT_EQ(run(joined({"folders", "add"}, grants)).exitStatus, 0);
  }

  [[nodiscard]] std::string shown(const std::string& path) const {
    return path.starts_with(home.path()) ? "~" + path.substr(home.path().size()) : path;
  }

  [[nodiscard]] std::string stepText(const Json& step) const {
    const auto& filter = step["filter"];
    auto text = fmt::format("{} {}", step["action"].get<std::string>(), shown(step["targetFolder"].get<std::string>()));
    std::string names;
    for (const auto& name : filter.value("categories", Json::array())) {
      names += (names.empty() ? "" : ",") + name.get<std::string>();
    }
    if (names.empty() && step["action"] == "move" && filter.contains("extensions")) names = "installers";
    if (!names.empty()) text += " " + names;
    if (filter.contains("minimumAgeDays")) text += fmt::format(" {}d", filter["minimumAgeDays"].get<std::int64_t>());
    if (filter.contains("minimumSizeBytes")) {
      text += fmt::format(" {}M", filter["minimumSizeBytes"].get<std::int64_t>() / 1'048'576);
    }
    return text;
  }

  // In the table's words.
  [[nodiscard]] std::string answerText(const Json& answer) const {
    if (!answer["room"].is_null()) {
      const auto room = answer["room"]["room"].get<std::string>();
      const auto command = answer["room"]["command"].is_null() ? "" : answer["room"]["command"].get<std::string>();
      auto text = "room " + room;
      if (room == "uninstall" && command.starts_with("orvanectl apps uninstall ")) text += " " + command.substr(25);
      if (const auto folder = command.find(" ~/"); folder != std::string::npos) {
        text += command.substr(folder, command.find(' ', folder + 1) - folder);
      }
      std::erase(text, '"');
      return text;
    }
    if (!answer["understood"].get<bool>()) return "nothing";
    const auto summary = answer["plan"]["summary"].get<std::string>();
    constexpr std::string_view places = "Clear what can be had again: ";
    if (summary.starts_with(places)) {
      auto names = summary.substr(places.size());
      names.pop_back();
      std::erase(names, ',');
      return "place " + names;
    }
    const auto& steps = answer["plan"]["steps"];
    auto text = stepText(steps[0]);
    // Several folders in the place of the first.
    for (std::size_t at = 1; at < steps.size(); ++at) {
      const auto folder = shown(steps[at]["targetFolder"].get<std::string>());
      auto same = steps[at];
      same["targetFolder"] = steps[0]["targetFolder"];
      if (stepText(same) != stepText(steps[0])) return "steps that differ";
      const auto end = std::min(text.find(' ', text.find("~/")), text.size());
      text.insert(end, "," + folder);
    }
    return text;
  }

  static bool selectsSomething(const Json& answer) {
    return std::ranges::any_of(answer["matches"], [](const Json& match) {
      return match["isSelected"].get<bool>() && match["action"] != "review";
    });
  }

  static constexpr double day = 86400;
  std::vector<std::string> grants;
};

TEST_P(RequestTable, becomesThePlansThatPeopleMean) {
  const auto rows = tableRows(std::string(REQUESTS) + "/" + GetParam());
  ASSERT_GE(rows.size(), 150U);
  std::size_t right = 0;
  std::size_t selected = 0;
  std::string wrong;
  for (const auto& row : rows) {
    const auto result = run({"ask", row.request, "--json"});
    const auto answer = parseJson(result.output);
    const auto text = answerText(answer);
    const bool selects = selectsSomething(answer);
    const bool isRoom = row.meant.starts_with("room ") && text.starts_with(row.meant + " ");
    const bool isRight = text == row.meant || isRoom;
    if (isRight) {
      ++right;
      selected += selects ? 1 : 0;
    } else {
      wrong += fmt::format("\n{}\n  meant: {}\n  taken: {}", row.request, row.meant, text);
    }
    EXPECT_FALSE(selects && (!isRight || row.meant == "nothing" || row.meant.starts_with("room ")))
        << "a wrong plan comes selected: " << row.request << "\n  " << text;
  }
  EXPECT_GE(right * 100, rows.size() * 95) << right << " of " << rows.size() << wrong;
  EXPECT_GE(selected * 5, rows.size()) << "else the home selects too little to show a wrong plan";
}

INSTANTIATE_TEST_SUITE_P(Languages, RequestTable, Values("english.txt", "other-languages.txt"));

}  // namespace
}  // namespace orvane::test
