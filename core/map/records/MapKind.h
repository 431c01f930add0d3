#pragma once

#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// The kind of a file, as far as its extension tells.
enum class MapKind : std::uint8_t { pictures, videos, audio, documents, archives, installers, source, other };
inline constexpr EnumTable mapKinds({
    RawValueRow{MapKind::pictures, "pictures"},
    RawValueRow{MapKind::videos, "videos"},
    RawValueRow{MapKind::audio, "audio"},
    RawValueRow{MapKind::documents, "documents"},
    RawValueRow{MapKind::archives, "archives"},
    RawValueRow{MapKind::installers, "installers"},
    RawValueRow{MapKind::source, "source"},
    RawValueRow{MapKind::other, "other"},
});
inline constexpr auto allMapKinds = mapKinds.values();

inline constexpr double secondsOfADay = 86400;

// How long ago a file was last changed.
enum class MapAge : std::uint8_t { month, halfYear, year, older, unknown };
struct MapAgeRow {
  MapAge value;
  std::string_view rawValue;
  std::int64_t days;  // less than so many
};
inline constexpr EnumTable mapAges({
    MapAgeRow{MapAge::month, "month", 30},
    MapAgeRow{MapAge::halfYear, "halfYear", 182},
    MapAgeRow{MapAge::year, "year", 365},
    MapAgeRow{MapAge::older, "older", INT64_MAX},
    MapAgeRow{MapAge::unknown, "unknown", 0},
});
inline constexpr auto allMapAges = mapAges.values();
constexpr MapAge ageAfter(double days) noexcept {
  for (const auto age : allMapAges) {
    if (days < static_cast<double>(mapAges[age].days)) return age;
  }
  return MapAge::older;
}

// The state of a folder to Orvane.
enum class MapState : std::uint8_t {
  yours,
  reclaimable,      // most of it is what a cleanup proposes
  protectedPlace,   // never listed nor touched; its bytes count
  unreadable,       // what it holds is unknown
  otherFileSystem,  // mounted there, or mounted twice; its bytes do not count
};
inline constexpr EnumTable mapStates({
    RawValueRow{MapState::yours, "yours"},
    RawValueRow{MapState::reclaimable, "reclaimable"},
    RawValueRow{MapState::protectedPlace, "protected"},
    RawValueRow{MapState::unreadable, "unreadable"},
    RawValueRow{MapState::otherFileSystem, "otherFileSystem"},
});

}  // namespace orvane
