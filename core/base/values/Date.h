#pragma once

#include <chrono>
#include <cstdint>

namespace orvane {

// Wall clock that counts seconds from 2001-01-01T00:00:00Z in a double, so that a date written to JSON reads back
// to the same bits.
struct ReferenceClock {
  using rep = double;
  using period = std::ratio<1>;
  using duration = std::chrono::duration<double>;
  using time_point = std::chrono::time_point<ReferenceClock>;
  static constexpr bool is_steady = false;

  static time_point now() noexcept;
};

// A point in time.
using Date = ReferenceClock::time_point;

// Seconds between 1970-01-01T00:00:00Z and 2001-01-01T00:00:00Z.
constexpr std::int64_t referenceDateUnixSeconds = 978307200;

[[nodiscard]] constexpr Date dateFromReferenceSeconds(double seconds) noexcept {
  return Date{ReferenceClock::duration{seconds}};
}
[[nodiscard]] constexpr double referenceSeconds(Date date) noexcept {
  return date.time_since_epoch().count();
}

[[nodiscard]] Date dateFromUnix(std::int64_t seconds, std::int64_t nanoseconds = 0) noexcept;
// Seconds since 1970-01-01T00:00:00Z, with their fraction.
[[nodiscard]] double unixSeconds(Date date) noexcept;

}  // namespace orvane
