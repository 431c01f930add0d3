#pragma once

#include "core/base/values/Date.h"
#include "core/map/records/StorageMap.h"
#include "core/platform/SystemProfile.h"
#include "core/safety/rules/PathValidator.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <stop_token>
#include <string>

namespace orvane {

// Adds up a folder tree on all processors: what takes room is counted as `du -x` does, links are not followed, a file
// with several names counts once, under the name that sorts first by its folder. Only reads, protected places too.
class MapWalk {
 public:
  // Of the files of a folder, so many are kept by name.
  static constexpr std::size_t someFiles = 12;
  static constexpr std::size_t everyFile = std::numeric_limits<std::size_t>::max();
  struct Options {
    std::size_t filesKept = someFiles;
    std::stop_token stop = {};
    // Called on the calling thread now and then, with the sum so far and the folder that was just read.
    std::function<void(const MapSum& sum, const std::string& path)> progress = {};
  };

  // `validator` and `profile` must outlive this object. Ages count to `now`.
  MapWalk(const PathValidator& validator, const SystemProfile& profile, Date now)
      : m_validator(validator), m_profile(profile), m_now(now) {}

  // A link at the path itself is followed. Absent where the walk was stopped. Throws std::system_error where there is
  // no such folder.
  [[nodiscard]] std::optional<StorageMap> map(const std::string& path, const Options& options) const;

 private:
  const PathValidator& m_validator;
  const SystemProfile& m_profile;
  Date m_now;
};

}  // namespace orvane
