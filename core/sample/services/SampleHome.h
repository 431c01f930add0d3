#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

// A home to try everything on: a few hundred files as programs and people leave them, aged, in a folder of its own. The
// files are sparse: whatever size they show, together they take a few megabytes of the disk.
struct SampleHome {
  std::string folder;  // holds everything of the sample, the state of programs that work in it too
  std::int64_t files = 0;
  std::int64_t bytes = 0;

  // Makes the home in `folder`, which must be missing or empty, and nothing outside it. Throws std::runtime_error.
  [[nodiscard]] static SampleHome make(const std::string& folder);

  [[nodiscard]] std::string home() const;
  // Variables of the environment with which a program works in the sample alone: its state, its Trash, no message bus,
  // no service manager and no key ring of the user's. A display stays in reach.
  using Environment = std::vector<std::pair<std::string, std::string>>;
  [[nodiscard]] Environment environment() const;
  // Writes a script into the folder that starts a program, given by its absolute path, with this environment in this
  // home. Returns the script's path. Throws std::system_error.
  [[nodiscard]] std::string makeStarter(const std::string& program) const;
};

// A text as one word of a shell's command line, in single quotes.
[[nodiscard]] std::string shellWord(std::string_view text);

}  // namespace orvane
