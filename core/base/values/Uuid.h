#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// A universally unique identifier (RFC 9562). Its text form is upper case.
class Uuid {
 public:
  // The nil identifier, all bits zero.
  constexpr Uuid() noexcept = default;

  // A fresh random identifier (version 4). Safe from any thread and after a fork.
  static Uuid random();
  // Reads the hyphenated form of 36 characters in either case; anything else yields nothing.
  static std::optional<Uuid> parse(std::string_view text) noexcept;

  [[nodiscard]] std::string toString() const;
  void appendTo(std::string& text) const;

  auto operator<=>(const Uuid&) const noexcept = default;

 private:
  friend struct std::hash<Uuid>;
  std::array<std::uint8_t, 16> m_bytes{};
};

}  // namespace orvane

template <>
struct std::hash<orvane::Uuid> {
  std::size_t operator()(const orvane::Uuid& uuid) const noexcept {
    std::size_t result = 0;
    for (const auto byte : uuid.m_bytes) result = result * 131 + byte;
    return result;
  }
};
