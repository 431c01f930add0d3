#pragma once

#include <cstdint>
#include <stop_token>
#include <string>

namespace orvane::cli {

enum class LineEnd : std::uint8_t { complete, endOfInput, interrupted };

// Reads standard input up to the end of a line, which is not part of `line`, and not a byte further. A line that does
// not end within `maxLineBytes` bytes ends there as if the input did. Throws std::system_error.
constexpr std::size_t maxLineBytes = 64UL * 1024;
[[nodiscard]] LineEnd readLine(std::string& line, const std::stop_token& stop);

}  // namespace orvane::cli
