#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace orvane {

// SHA-256 (FIPS 180-4) over bytes that come piece by piece.
class Sha256 {
 public:
  using Digest = std::array<std::uint8_t, 32>;

  Sha256();
  // Goes on from where `other` is.
  Sha256(const Sha256& other);
  Sha256(Sha256&&) noexcept = default;
  Sha256& operator=(const Sha256&) = delete;
  Sha256& operator=(Sha256&&) noexcept = default;
  ~Sha256() = default;

  void update(std::span<const std::byte> bytes);
  // The digest of everything since the start; the next piece starts anew.
  [[nodiscard]] Digest finish();

 private:
  struct Closer {
    void operator()(void* context) const noexcept;
  };
  std::unique_ptr<void, Closer> m_context;
};

// 64 lower-case hexadecimal characters.
[[nodiscard]] std::string digestText(const Sha256::Digest& digest);

}  // namespace orvane
