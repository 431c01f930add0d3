#pragma once

#include "core/base/JsonFwd.h"

#include <functional>
#include <optional>
#include <string_view>

namespace orvane {

// The user's settings: a JSON value by key, shared by all processes of the program.
class Preferences {
 public:
  virtual ~Preferences() = default;

  // The stored value as it is on the disk now; absent where there is none.
  [[nodiscard]] virtual std::optional<Json> value(std::string_view key) const = 0;
  // Stores durably; keys that another process wrote meanwhile stay. Throws std::system_error.
  virtual void setValue(std::string_view key, const Json& value) = 0;
};

}  // namespace orvane
