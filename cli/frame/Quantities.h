#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane::cli {

// Numbers as people write them. Each throws UsageError that names the option.

// Whole days, at least 1.
[[nodiscard]] std::int64_t daysFrom(const std::string& text, std::string_view option);
// Bytes: "200M", "1.5GB", "4096". K, M, G and T count in thousands, as sizes are shown; Ki, Mi, Gi and Ti in 1024.
[[nodiscard]] std::int64_t bytesFrom(const std::string& text, std::string_view option);

}  // namespace orvane::cli
