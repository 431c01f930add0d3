#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The dictionary of a property list, in its XML or its binary form.
class PropertyList {
 public:
  // The bytes may come from anywhere. Absent when they are damaged, no dictionary, or out of all proportion.
  static std::optional<PropertyList> parse(std::string_view bytes);

  // The text under a key; absent where there is none, an empty one or another type.
  [[nodiscard]] std::optional<std::string> text(const char* key) const;

 private:
  struct Closer {
    void operator()(void* node) const noexcept;
  };
  explicit PropertyList(void* dictionary) noexcept : m_dictionary(dictionary) {}
  std::unique_ptr<void, Closer> m_dictionary;
};

}  // namespace orvane
