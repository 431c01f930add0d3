#pragma once

#include "app/cleanup/CleanupArrangement.h"

#include <QVariantList>

#include <cstdint>

namespace orvane {

class FileUrl;

// The filters that narrow a list, one by one.
enum class CleanupFilter : std::uint8_t { search, risk, category, folder, inside };

// {filter, text} of each that is set.
[[nodiscard]] QVariantList filterChips(const CleanupQuery& query, const FileUrl& home);
[[nodiscard]] CleanupQuery withoutFilter(CleanupQuery query, CleanupFilter filter);
// The order alone.
[[nodiscard]] CleanupQuery withoutFilters(const CleanupQuery& query);

}  // namespace orvane
