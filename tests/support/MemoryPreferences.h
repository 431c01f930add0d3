#pragma once

#include "core/base/Json.h"
#include "core/platform/Preferences.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::test {

class MemoryPreferences : public Preferences {
 public:
  [[nodiscard]] std::optional<Json> value(std::string_view name) const override {
    const auto found = values.find(std::string(name));
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void setValue(std::string_view name, const Json& value) override { values[std::string(name)] = value; }
  std::map<std::string, Json> values;
};

}  // namespace orvane::test
