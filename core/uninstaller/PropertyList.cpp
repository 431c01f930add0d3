#include "core/uninstaller/PropertyList.h"

#include "core/uninstaller/PropertyListGuard.h"

#include <plist/plist.h>

#include <cstdint>

namespace orvane {

void PropertyList::Closer::operator()(void* node) const noexcept {
  plist_free(node);
}

std::optional<PropertyList> PropertyList::parse(std::string_view bytes) {
  if (bytes.size() > UINT32_MAX || !isPropertyListBounded(bytes)) return std::nullopt;
  plist_t node = nullptr;
  plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &node);
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
