#include "core/base/text/ByteCount.h"

#include <unicode/numberformatter.h>

#include <array>
#include <cmath>
#include <optional>
#include <string_view>

namespace orvane {
namespace {

struct Unit {
  std::string_view name;
  double bytes;
  int fractionDigits;
};

constexpr std::array units{
    Unit{"KB", 1e3, 0},  Unit{"MB", 1e6, 1},  Unit{"GB", 1e9, 2},
    Unit{"TB", 1e12, 2}, Unit{"PB", 1e15, 2}, Unit{"EB", 1e18, 2},
};

constexpr int maxFractionDigits = 2;

icu::number::LocalizedNumberFormatter makeFormatter(int fractionDigits) {
  return icu::number::NumberFormatter::withLocale(icu::Locale::getDefault())
      .precision(icu::number::Precision::maxFraction(fractionDigits))
      .roundingMode(UNUM_ROUND_HALFEVEN);
}

// Making one takes many times as long as using it, and a list shows two numbers a line.
const icu::number::LocalizedNumberFormatter& formatterFor(int fractionDigits) {
  struct Made {
    icu::Locale locale;
    std::optional<icu::number::LocalizedNumberFormatter> formatter;
  };
  thread_local std::array<Made, maxFractionDigits + 1> cache;
  auto& made = cache.at(static_cast<std::size_t>(fractionDigits));
  if (const auto& locale = icu::Locale::getDefault(); !made.formatter || made.locale != locale) {
    made.formatter.emplace(makeFormatter(fractionDigits));
    made.locale = locale;
  }
  return *made.formatter;
}

template <typename Number>
std::string formatNumber(Number number, int fractionDigits) {
  UErrorCode status = U_ZERO_ERROR;
  const auto& text = formatterFor(fractionDigits);
  std::string result;
  if constexpr (std::is_integral_v<Number>) {
    text.formatInt(number, status).toString(status).toUTF8String(result);
  } else {
    text.formatDouble(number, status).toString(status).toUTF8String(result);
  }
  return result;
}

// Rounded to the unit's digits, which can reach the next unit: 999,999 bytes are 1 MB.
double roundedIn(const Unit& unit, double bytes) {
  const double scale = std::pow(10.0, unit.fractionDigits);
  return std::nearbyint(bytes / unit.bytes * scale) / scale;
}

}  // namespace

std::string formatByteCount(std::int64_t bytes) {
  if (bytes == 0) return "Zero KB";
  const double magnitude = std::abs(static_cast<double>(bytes));
  if (magnitude < 1000) return formatNumber(bytes, 0) + (bytes == 1 || bytes == -1 ? " byte" : " bytes");
  std::size_t index = 0;
  while (index + 1 < units.size() && roundedIn(units[index], magnitude) >= 1000) ++index;
  const double value = std::copysign(roundedIn(units[index], magnitude), static_cast<double>(bytes));
  return formatNumber(value, units[index].fractionDigits) + " " + std::string(units[index].name);
}

std::string formatCount(std::int64_t count) {
  return formatNumber(count, 0);
}

}  // namespace orvane
