#include "core/base/values/Uuid.h"

#include "core/base/text/HexDigit.h"
#include "core/base/values/FatalError.h"

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <random>

namespace orvane {
namespace {

// How often this process came out of a fork: asking for the process's number instead would cost a system call each
// time.
std::atomic<unsigned> forkCount = 0;

unsigned currentForkCount() {
  static const int registered = ::pthread_atfork(nullptr, nullptr, [] { ++forkCount; });
  if (registered != 0) fatalError("forks cannot be noticed");
  return forkCount.load(std::memory_order_relaxed);
}

// Seeded from the system once: a scan makes an identifier for each file, and a system call each would cost as much as
// reading the file's status. An identifier tells things apart; it is no secret.
class Generator {
 public:
  Generator() {
    std::array<std::uint32_t, 8> seed{};
    if (::getentropy(seed.data(), sizeof seed) != 0) fatalError("the system gives no random bytes");
    std::seed_seq sequence(seed.begin(), seed.end());
    m_engine.seed(sequence);
  }

  [[nodiscard]] bool isOfThisProcess() const { return m_forkCount == currentForkCount(); }

  void fill(std::array<std::uint8_t, 16>& bytes) {
    const std::array<std::uint64_t, 2> words{m_engine(), m_engine()};
    std::memcpy(bytes.data(), words.data(), sizeof words);
  }

 private:
  std::mt19937_64 m_engine;
  unsigned m_forkCount = currentForkCount();
};

// Where the two digits of each byte stand in the text, and the hyphens.
constexpr std::array<std::uint8_t, 16> digitPlaces{0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::array<std::uint8_t, 4> hyphenPlaces{8, 13, 18, 23};

// A journal holds hundreds of thousands of identifiers.
constexpr auto hexValues = [] {
  std::array<std::int8_t, 256> values{};
  for (std::size_t c = 0; c < values.size(); ++c) values[c] = static_cast<std::int8_t>(hexValue(static_cast<char>(c)));
  return values;
}();

constexpr int valueOf(char c) {
  return hexValues[static_cast<std::uint8_t>(c)];
}

}  // namespace

Uuid Uuid::random() {
  thread_local std::optional<Generator> generator;
  if (!generator || !generator->isOfThisProcess()) generator.emplace();
  Uuid result;
  generator->fill(result.m_bytes);
  result.m_bytes[6] = static_cast<std::uint8_t>((result.m_bytes[6] & 0x0F) | 0x40);
  result.m_bytes[8] = static_cast<std::uint8_t>((result.m_bytes[8] & 0x3F) | 0x80);
  return result;
}

std::optional<Uuid> Uuid::parse(std::string_view text) noexcept {
  if (text.size() != 36) return std::nullopt;
  Uuid result;
  int all = 0;  // negative once one digit is none
  for (std::size_t i = 0; i < result.m_bytes.size(); ++i) {
    const int high = valueOf(text[digitPlaces[i]]);
    const int low = valueOf(text[digitPlaces[i] + 1U]);
    all |= high | low;
    result.m_bytes[i] = static_cast<std::uint8_t>((high * 16) | low);
  }
  const bool hasHyphens = std::ranges::all_of(hyphenPlaces, [&](std::size_t place) { return text[place] == '-'; });
  return all >= 0 && hasHyphens ? std::optional(result) : std::nullopt;
}

std::string Uuid::toString() const {
  std::string text;
  appendTo(text);
  return text;
}

void Uuid::appendTo(std::string& text) const {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto start = text.size();
  text.append(36, '-');
  auto* place = text.data() + start;
  for (std::size_t i = 0; i < m_bytes.size(); ++i) {
    place[digitPlaces[i]] = digits[m_bytes[i] >> 4];
    place[digitPlaces[i] + 1U] = digits[m_bytes[i] & 0x0F];
  }
}

}  // namespace orvane
