#pragma once

#include "core/plans/records/ReadWord.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane {

// The parts that the parser recognises in a request in plain words: keywords, one folder, an age and a size.
struct PromptReading {
  std::optional<std::string_view> folder;  // path below "~"
  std::optional<std::int64_t> ageDays;
  std::optional<std::int64_t> sizeBytes;
  bool wantsScreenshots = false;
  bool wantsInstallers = false;
  bool wantsCaches = false;
  bool wantsLogs = false;
  bool wantsOrganizing = false;
  bool wantsRemoval = false;
  std::vector<ReadWord> words;  // all of the text, in its order

  // An age or a size beyond 64 bits ends the process: it must never wrap.
  static PromptReading of(std::string_view prompt);
};

}  // namespace orvane
