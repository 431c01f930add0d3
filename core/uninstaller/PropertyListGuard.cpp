#include "core/uninstaller/PropertyListGuard.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace orvane {
namespace {

// The parser goes one level deeper for each container at most, and no information list comes near these.
constexpr std::size_t maxContainers = 8192;
constexpr std::size_t maxReferences = 65536;
constexpr std::uint64_t maxExpandedBytes = 16 * 1024 * 1024;

constexpr std::string_view binaryMark = "bplist";
constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;

std::size_t occurrences(std::string_view text, std::string_view word) noexcept {
  std::size_t count = 0;
  for (auto at = text.find(word); at != std::string_view::npos; at = text.find(word, at + word.size())) ++count;
  return count;
}

// The tables of a binary property list.
class BinaryList {
 public:
  static std::optional<BinaryList> open(std::string_view bytes) noexcept {
    if (bytes.size() < headerSize + trailerSize) return std::nullopt;
    BinaryList list(bytes);
    const auto trailer = bytes.size() - trailerSize;
    list.m_offsetSize = list.byteAt(trailer + 6);
    list.m_referenceSize = list.byteAt(trailer + 7);
    const auto count = list.numberAt(trailer + 8, 8);
    const auto table = list.numberAt(trailer + 24, 8);
    if (!isNumberSize(list.m_offsetSize) || !isNumberSize(list.m_referenceSize) || !count || !table) {
      return std::nullopt;
    }
    if (*table > trailer || *count > (trailer - *table) / list.m_offsetSize) return std::nullopt;
    list.m_count = static_cast<std::size_t>(*count);
    list.m_table = static_cast<std::size_t>(*table);
    return list;
  }

  // Every container may be named once, so that what is read is a tree no larger than the file, and texts and data add
  // up to a bounded size however often they are named.
  [[nodiscard]] bool isBounded() const {
    std::vector<bool> isNamed(m_count, false);
    std::size_t containers = 0;
    std::size_t references = 0;
    std::uint64_t expanded = 0;
    for (std::size_t index = 0; index < m_count; ++index) {
      const auto object = objectAt(index);
      if (!object) return false;
      if (!object->isContainer) continue;
      if (++containers > maxContainers) return false;
      const auto held = object->references();
      if (held > maxReferences - references) return false;
      references += static_cast<std::size_t>(held);
      for (std::size_t i = 0; i < held; ++i) {
        const auto target = numberAt(object->content + i * m_referenceSize, m_referenceSize);
        if (!target || *target >= m_count) return false;
        const auto named = objectAt(static_cast<std::size_t>(*target));
        if (!named) return false;
        if (named->isContainer && isNamed[static_cast<std::size_t>(*target)]) return false;
        isNamed[static_cast<std::size_t>(*target)] = true;
        if (!named->isContainer) expanded += named->length;
        if (expanded > maxExpandedBytes) return false;
      }
    }
    return true;
  }

 private:
  struct Object {
    bool isContainer = false;
    bool isDictionary = false;
    std::size_t content = 0;   // where its bytes begin
    std::uint64_t length = 0;  // members of a container, units of a text, bytes of data

    // A dictionary names a key and a value for each member.
    [[nodiscard]] std::uint64_t references() const noexcept { return isDictionary ? length * 2 : length; }
  };

  explicit BinaryList(std::string_view bytes) noexcept : m_bytes(bytes) {}

  static bool isNumberSize(std::size_t size) noexcept { return size >= 1 && size <= 8; }

  [[nodiscard]] std::size_t byteAt(std::size_t at) const noexcept { return static_cast<unsigned char>(m_bytes[at]); }

  [[nodiscard]] std::optional<std::uint64_t> numberAt(std::size_t at, std::size_t size) const noexcept {
    if (at > m_bytes.size() || size > m_bytes.size() - at) return std::nullopt;
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value = value << 8U | byteAt(at + i);
    return value;
  }

  [[nodiscard]] std::optional<Object> objectAt(std::size_t index) const noexcept {
    const auto at = numberAt(m_table + index * m_offsetSize, m_offsetSize);
    if (!at || *at < headerSize || *at >= m_table) return std::nullopt;
    Object object;
    object.content = static_cast<std::size_t>(*at) + 1;
    const auto marker = byteAt(static_cast<std::size_t>(*at));
    const auto kind = marker >> 4U;
    object.isDictionary = kind == 0xd;
    object.isContainer = kind == 0xa || kind == 0xc || object.isDictionary;
    const bool hasLength = object.isContainer || (kind >= 4 && kind <= 7);
    if (!hasLength) return object;
    object.length = marker & 0xfU;
    if (object.length == 0xf) {
      // The length follows as a number object of its own.
      const auto size = std::size_t{1} << (numberAt(object.content, 1).value_or(0) & 0x3U);
      const auto length = numberAt(object.content + 1, size);
      if (!length) return std::nullopt;
      object.length = *length;
      object.content += 1 + size;
    }
    return object.length <= m_bytes.size() ? std::optional(object) : std::nullopt;
  }

  std::string_view m_bytes;
  std::size_t m_offsetSize = 0;
  std::size_t m_referenceSize = 0;
  std::size_t m_count = 0;
  std::size_t m_table = 0;
};

}  // namespace

bool isPropertyListBounded(std::string_view bytes) {
  if (bytes.starts_with(binaryMark)) {
    const auto list = BinaryList::open(bytes);
    return list && list->isBounded();
  }
  return occurrences(bytes, "<array") + occurrences(bytes, "<dict") <= maxContainers;
}

}  // namespace orvane
