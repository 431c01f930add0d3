#include "core/uninstaller/PropertyList.h"

#include "core/uninstaller/PropertyListGuard.h"

#include <plist/plist.h>

#include <cstdint>
#include <type_traits>

namespace orvane {
namespace {

// Later versions of the library also tell the form of the text, to those who want to know.
template <typename Read>
plist_t readNode(Read read, std::string_view bytes) {
  plist_t node = nullptr;
  const auto size = static_cast<std::uint32_t>(bytes.size());
  if constexpr (std::is_invocable_v<Read, const char*, std::uint32_t, plist_t*>) {
    read(bytes.data(), size, &node);
  } else {
    read(bytes.data(), size, &node, nullptr);
  }
  return node;
}

}  // namespace

void PropertyList::Closer::operator()(void* node) const noexcept {
  plist_free(node);
}

std::optional<PropertyList> PropertyList::parse(std::string_view bytes) {
  if (bytes.size() > UINT32_MAX || !isPropertyListBounded(bytes)) return std::nullopt;
  auto* const node = readNode(plist_from_memory, bytes);
  if (node == nullptr) return std::nullopt;
  PropertyList list(node);
  if (plist_get_node_type(node) != PLIST_DICT) return std::nullopt;
  return list;
}

std::optional<std::string> PropertyList::text(const char* key) const {
  auto* const node = plist_dict_get_item(m_dictionary.get(), key);
  if (node == nullptr || plist_get_node_type(node) != PLIST_STRING) return std::nullopt;
  std::uint64_t length = 0;
  const char* bytes = plist_get_string_ptr(node, &length);
  if (bytes == nullptr || length == 0) return std::nullopt;
  return std::string(bytes, static_cast<std::size_t>(length));
}

}  // namespace orvane
