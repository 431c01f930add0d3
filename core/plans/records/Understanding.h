#pragma once

#include "core/plans/records/ReadWord.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A section of the program that does what a plan cannot.
enum class Room : std::uint8_t { cleanup, duplicates, apps, organize, schedule, history, trash, map, privacy };

// Also the JSON form.
inline constexpr EnumTable rooms({
    RawValueRow{Room::cleanup, "cleanup"},
    RawValueRow{Room::duplicates, "duplicates"},
    RawValueRow{Room::apps, "uninstall"},
    RawValueRow{Room::organize, "organize"},
    RawValueRow{Room::schedule, "schedule"},
    RawValueRow{Room::history, "restore"},
    RawValueRow{Room::trash, "trash"},
    RawValueRow{Room::map, "map"},
    RawValueRow{Room::privacy, "privacy"},
});
constexpr std::string_view rawValue(Room room) noexcept {
  return rooms[room].rawValue;
}

// A request for what a section does, with what its fields begin with.
struct RoomRequest {
  Room room = Room::cleanup;
  std::string name = {};      // of an application
  std::string folder = {};    // path below "~"; empty where none is named
  std::string_view way = {};  // of organizing: "date", "type"; of a schedule: "daily", "weekly", "monthly"

  bool operator==(const RoomRequest&) const = default;
};

// Why a plan may be another one than was meant. The first that applies counts.
enum class Doubt : std::uint8_t {
  none,
  negation,     // the request says what must stay
  question,     // it asks
  otherRoom,    // a section does it
  nothing,      // it names nothing that the tables know
  path,         // it names a file or a folder as the disk has it
  unknownWord,  // a word that no table knows may change what is meant
  leftAside,    // a word is known, and the plan does not follow it
  comparison,   // it is not clear that an age or a size is a least one
  noCriterion,  // all of a folder is to go, and the plan takes the large files
  noVerb,       // it does not say what is to be done
  program,      // a program itself may be meant, and the plan takes its caches
};

// The case name is also the JSON form.
inline constexpr EnumTable doubts({
    RawValueRow{Doubt::none, "none"},
    RawValueRow{Doubt::negation, "negation"},
    RawValueRow{Doubt::question, "question"},
    RawValueRow{Doubt::otherRoom, "otherRoom"},
    RawValueRow{Doubt::nothing, "nothing"},
    RawValueRow{Doubt::path, "path"},
    RawValueRow{Doubt::unknownWord, "unknownWord"},
    RawValueRow{Doubt::leftAside, "leftAside"},
    RawValueRow{Doubt::comparison, "comparison"},
    RawValueRow{Doubt::noCriterion, "noCriterion"},
    RawValueRow{Doubt::noVerb, "noVerb"},
    RawValueRow{Doubt::program, "program"},
});
constexpr std::string_view rawValue(Doubt doubt) noexcept {
  return doubts[doubt].rawValue;
}

// Places of one program, or folders that tools build, which a request names.
struct NamedProgram {
  std::string name;      // as its places have it; of build folders, as they are called
  bool isBuild = false;  // folders that a tool makes from a project

  bool operator==(const NamedProgram&) const = default;
};

// How a request in plain words was understood. Spans are of the request as typed.
struct Understanding {
  Doubt doubt = Doubt::none;
  std::vector<ReadWord> words = {};
  std::optional<std::string> folder = {};      // path below "~"
  std::vector<std::string> otherFolders = {};  // those that are named with it: "downloads and desktop"
  std::optional<std::int64_t> ageDays = {};
  std::optional<std::int64_t> sizeBytes = {};
  std::optional<RoomRequest> room = {};
  std::vector<NamedProgram> programs = {};

  // Whether the plan is the one that was asked for; else nothing of it comes selected.
  [[nodiscard]] bool isSure() const noexcept { return doubt == Doubt::none; }
};

}  // namespace orvane
