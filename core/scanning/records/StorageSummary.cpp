#include "core/scanning/records/StorageSummary.h"

#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"

#include <fmt/format.h>

namespace orvane {
namespace {

double fractionOf(std::int64_t part, std::int64_t whole) noexcept {
  return whole < 1 ? 0 : static_cast<double>(part) / static_cast<double>(whole);
}

}  // namespace

std::string StorageSummary::formattedTotal() const {
  return formatByteCount(totalDiskBytes);
}

std::string StorageSummary::formattedFree() const {
  return formatByteCount(freeDiskBytes);
}

std::string StorageSummary::formattedUsed() const {
  return formatByteCount(usedDiskBytes);
}

std::string StorageSummary::formattedReclaimable() const {
  return formatByteCount(reclaimableBytes);
}

std::string StorageSummary::formattedLifetimeReclaimed() const {
  return formatByteCount(lifetimeReclaimedBytes);
}

double StorageSummary::usedPercentage() const noexcept {
  return fractionOf(usedDiskBytes, totalDiskBytes);
}

double StorageSummary::reclaimablePercentage() const noexcept {
  return fractionOf(reclaimableBytes, totalDiskBytes);
}

Json StorageSummary::toJson() const {
  Json json = Json::object();
  json["totalDiskBytes"] = totalDiskBytes;
  json["freeDiskBytes"] = freeDiskBytes;
  json["usedDiskBytes"] = usedDiskBytes;
  json["reclaimableBytes"] = reclaimableBytes;
  json["lifetimeReclaimedBytes"] = lifetimeReclaimedBytes;
  Json breakdown = Json::object();
  for (const auto& [category, bytes] : categoryBreakdown) breakdown[std::string(rawValue(category))] = bytes;
  json["categoryBreakdown"] = std::move(breakdown);
  return json;
}

StorageSummary StorageSummary::fromJson(const Json& json) {
  StorageSummary summary;
  summary.totalDiskBytes = integerAt(json, "totalDiskBytes");
  summary.freeDiskBytes = integerAt(json, "freeDiskBytes");
  summary.usedDiskBytes = integerAt(json, "usedDiskBytes");
  summary.reclaimableBytes = integerAt(json, "reclaimableBytes");
  summary.lifetimeReclaimedBytes = integerAt(json, "lifetimeReclaimedBytes");
  const auto& breakdown = requiredKey(json, "categoryBreakdown");
  if (!breakdown.is_object()) throw JsonError("\"categoryBreakdown\" must be an object");
  for (const auto& [key, bytes] : breakdown.items()) {
    const auto category = scanCategoryFromRawValue(key);
    if (!category) throw JsonError(fmt::format("unknown category {} in \"categoryBreakdown\"", key));
    summary.categoryBreakdown[*category] = integerFrom(bytes, key);
  }
  return summary;
}

}  // namespace orvane
