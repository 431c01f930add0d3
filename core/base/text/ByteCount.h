#pragma once

#include <cstdint>
#include <string>

namespace orvane {

// A byte count for people, in decimal units with the user's number format: "Zero KB", "1 byte", "512 bytes", "12 KB",
// "3.4 MB", "1.25 GB".
[[nodiscard]] std::string formatByteCount(std::int64_t bytes);
// A plain count with the user's thousands separators.
[[nodiscard]] std::string formatCount(std::int64_t count);

}  // namespace orvane
