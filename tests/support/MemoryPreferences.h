#pragma once

#include "core/base/text/Json.h"
#include "core/platform/Preferences.h"

#include <functional>
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
  void update(std::string_view name, const std::function<Json(const Json*)>& change) override {
    const auto found = values.find(std::string(name));
    setValue(name, change(found == values.end() ? nullptr : &found->second));
  }
  std::map<std::string, Json> values;
};

}  // namespace orvane::test
