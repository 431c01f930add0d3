#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <map>
#include <string>

namespace orvane {

// Totals of the disk and of cleaning, in bytes.
struct StorageSummary {
  std::int64_t totalDiskBytes = 0;  // of the volume that holds the home folder
  std::int64_t freeDiskBytes = 0;
  std::int64_t usedDiskBytes = 0;
  std::int64_t reclaimableBytes = 0;        // of the items of the last scan
  std::int64_t lifetimeReclaimedBytes = 0;  // moved to the Trash by this program
  std::map<ScanCategory, std::int64_t> categoryBreakdown;

  [[nodiscard]] std::string formattedTotal() const;
  [[nodiscard]] std::string formattedFree() const;
  [[nodiscard]] std::string formattedUsed() const;
  [[nodiscard]] std::string formattedReclaimable() const;
  [[nodiscard]] std::string formattedLifetimeReclaimed() const;
  // Fractions of the disk between 0 and 1; 0 when the disk's size is unknown.
  [[nodiscard]] double usedPercentage() const noexcept;
  [[nodiscard]] double reclaimablePercentage() const noexcept;

  bool operator==(const StorageSummary&) const = default;

  // Keys in field order; the categories are keyed by their raw values.
  [[nodiscard]] Json toJson() const;
  // Throws JsonError.
  static StorageSummary fromJson(const Json& json);
};

}  // namespace orvane
