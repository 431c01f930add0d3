#pragma once

#include <cstddef>
#include <functional>

namespace orvane {

// Mixes the hash of one more field into `seed`.
template <typename T>
void hashCombine(std::size_t& seed, const T& value) {
  seed ^= std::hash<T>{}(value) + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
}

}  // namespace orvane
