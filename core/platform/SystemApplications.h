#pragma once

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A program that this system installs in a way of its own.
struct SystemApplication {
  enum class Kind : std::uint8_t {
    appImage,       // one file that runs by itself
    flatpak,        // in a store whose files never move singly
    flatpakData,    // of a Flatpak that is installed nowhere any more
    desktopEntry,   // the user's own entry in the menu of programs
    versionedTool,  // a folder for each version
    package,        // of the system's package manager
  };

  Kind kind = Kind::package;
  std::string name;
  std::string identifier;  // empty where it has none
  std::string version;     // empty where nothing tells
  std::string place;       // absolute: goes to the Trash; of a protected one the file or folder by which it was found
  std::vector<std::string> parts = {};      // absolute: go with it
  std::vector<std::string> leftovers = {};  // absolute, named exactly as it is; they need not be there
  std::string icon = {};                    // a picture's path; empty where there is none
  bool isProtected = false;
  std::string removalCommand = {};         // of what is protected; empty where none is known
  bool isOrphan = false;                   // its program is gone
  std::optional<std::int64_t> bytes = {};  // where the system knows it; else it is measured at `place`
};

// The case name; also the form in JSON.
[[nodiscard]] constexpr std::string_view rawValue(SystemApplication::Kind kind) noexcept {
  constexpr std::string_view names[] = {"appImage",     "flatpak",       "flatpakData",
                                        "desktopEntry", "versionedTool", "package"};
  return names[static_cast<std::size_t>(kind)];
}

// Finds the programs that lie in no folder of applications as bundles.
class SystemApplications {
 public:
  virtual ~SystemApplications() = default;

  // In no order, each place once. Passes over unreadable ones.
  [[nodiscard]] virtual std::vector<SystemApplication> list(const std::stop_token& /*stop*/) const { return {}; }

  [[nodiscard]] static const SystemApplications& none() noexcept {
    static const SystemApplications nothing;
    return nothing;
  }
};

}  // namespace orvane
