#pragma once

#include <string_view>

namespace orvane {

// Whether a folder of this name is a bundle: a folder that its user sees as one file. By its extension, in any case.
[[nodiscard]] bool isBundleName(std::string_view name) noexcept;

}  // namespace orvane
