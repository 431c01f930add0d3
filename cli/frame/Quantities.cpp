#include "cli/frame/Quantities.h"

#include "cli/frame/UsageError.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace orvane::cli {
namespace {

struct Unit {
  std::string_view name;  // lower case; a "b" may follow
  double bytes;
};
constexpr double kibi = 1024;
constexpr std::array units{
    Unit{"", 1},
    Unit{"k", 1e3},
    Unit{"m", 1e6},
    Unit{"g", 1e9},
    Unit{"t", 1e12},
    Unit{"ki", kibi},
    Unit{"mi", kibi* kibi},
    Unit{"gi", kibi* kibi* kibi},
    Unit{"ti", kibi* kibi* kibi* kibi},
};
constexpr double tooMany = 1e18;

[[noreturn]] void refuse(const std::string& text, std::string_view option, std::string_view wanted) {
  throw UsageError(fmt::format("{} {}: {}", option, escapedForDisplay(text), wanted));
}

}  // namespace

std::int64_t daysFrom(const std::string& text, std::string_view option) {
  constexpr std::int64_t maxDays = 1'000'000;
  std::int64_t days = 0;
  const auto* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, days);
  if (result.ec != std::errc() || result.ptr != end || days < 1 || days > maxDays) {
    refuse(text, option, "give a number of days, such as 30");
  }
  return days;
}

std::int64_t bytesFrom(const std::string& text, std::string_view option) {
  constexpr std::string_view wanted = "give a size such as 500K, 200M or 1.5GB";
  double number = 0;
  const auto* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number, std::chars_format::fixed);
  if (result.ec != std::errc() || !(number >= 0)) refuse(text, option, wanted);
  auto unit = lowercased(std::string_view(result.ptr, static_cast<std::size_t>(end - result.ptr)));
  if (unit.starts_with(' ')) unit.erase(0, 1);
  if (unit.ends_with('b')) unit.pop_back();
  const auto* const found = std::ranges::find(units, unit, &Unit::name);
  if (found == units.end()) refuse(text, option, wanted);
  const double bytes = std::round(number * found->bytes);
  if (bytes < 1 || bytes > tooMany) refuse(text, option, wanted);
  return static_cast<std::int64_t>(bytes);
}

}  // namespace orvane::cli
