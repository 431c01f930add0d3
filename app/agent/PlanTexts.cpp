#include "app/agent/PlanTexts.h"

#include "app/common/Text.h"
#include "core/localization/ThreadSafeLanguageStore.h"
#include "core/scanning/records/ScanCategory.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {
namespace {

enum class Value : std::uint8_t { none, text, days, category };

// A text of the planner, around the value that it holds.
struct PlanTextRow {
  std::string_view before;
  std::string_view after;
  std::string_view key;
  Value value = Value::none;
};
constexpr std::array planTextRows{
    PlanTextRow{"Organize files directly into categorized subfolders inside ", ".", "plan.organize", Value::text},
    PlanTextRow{"Organize ", " into structured categories.", "plan.organize_summary", Value::text},
    PlanTextRow{"Move screenshots older than ", " days to Trash.", "plan.screenshots", Value::days},
    PlanTextRow{"Find and trash old screenshots.", "", "plan.screenshots_summary"},
    PlanTextRow{"Clean downloaded installer packages (.dmg, .pkg) older than ", " days.", "plan.installers",
                Value::days},
    PlanTextRow{"Clean leftover disk images and installer packages.", "", "plan.installers_summary"},
    PlanTextRow{"Remove safe temporary caches and log files to reclaim disk space.", "", "plan.caches"},
    PlanTextRow{"Reclaim space from system/user caches and logs.", "", "plan.caches_summary"},
    PlanTextRow{"Trash unneeded files matching query criteria.", "", "plan.trash_query"},
    PlanTextRow{"Move files that fit to ", ".", "plan.move_to", Value::text},
    PlanTextRow{"Review candidate files matching query criteria.", "", "plan.review_query"},
    PlanTextRow{"Query candidate files matching criteria for review.", "", "plan.review_query_summary"},
    PlanTextRow{"Move what programs keep again by themselves to the Trash: ", ".", "plan.category", Value::category},
    PlanTextRow{"Move what ", " keeps there to the Trash.", "plan.program", Value::text},
    PlanTextRow{"Move folders named ", ", which tools build again, to the Trash.", "plan.build_folders", Value::text},
    PlanTextRow{"Clear what can be had again: ", ".", "plan.places_summary", Value::text},
};

// Absent where the value is none of its kind.
std::optional<QString> shownValue(std::string_view value, Value kind) {
  if (kind == Value::days) {
    std::int64_t days = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), days);
    if (error != std::errc() || end != value.data() + value.size()) return std::nullopt;
    return countedText("count.days", days);
  }
  if (kind == Value::category) {
    const auto found =
        std::ranges::find_if(allScanCategories, [&](ScanCategory category) { return displayName(category) == value; });
    if (found == allScanCategories.end()) return std::nullopt;
    return localizedText("category." + std::string(rawValue(*found)));
  }
  return shownName(value);
}

}  // namespace

QString shownPlanText(const std::string& text) {
  // The texts are given in English, and count without regard to one.
  if (ThreadSafeLanguageStore::shared().currentLanguage() == AppLanguage::en) return shownName(text);
  const std::string_view view = text;
  for (const auto& row : planTextRows) {
    if (row.value == Value::none) {
      if (view == row.before) return localizedText(row.key);
      continue;
    }
    if (view.size() <= row.before.size() + row.after.size() || !view.starts_with(row.before) ||
        !view.ends_with(row.after)) {
      continue;
    }
    const auto value = view.substr(row.before.size(), view.size() - row.before.size() - row.after.size());
    if (const auto shown = shownValue(value, row.value)) return localizedText(row.key).arg(*shown);
  }
  return shownName(text);
}

}  // namespace orvane
