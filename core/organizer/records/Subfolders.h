#pragma once

#include <cstdint>

namespace orvane {

enum class Subfolders : std::uint8_t {
  keepWhole,  // only the folder's own entries; its folders are candidates themselves
  include,    // the files at every depth
};

}  // namespace orvane
