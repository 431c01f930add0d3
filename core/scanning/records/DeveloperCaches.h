#pragma once

#include <cstdint>

namespace orvane {

// Whether a scan lists what developers' tools keep, each folder as one item.
enum class DeveloperCaches : std::uint8_t { leaveOut, include };

}  // namespace orvane
