#pragma once

#include "core/base/text/JsonFwd.h"

#include <functional>
#include <optional>
#include <string_view>

namespace orvane {

// The user's settings: a JSON value by key, shared by all processes of the program.
class Preferences {
 public:
  virtual ~Preferences() = default;

  // The stored value as it is on the disk now; absent where there is none. Throws std::system_error when the disk does
  // not tell: what cannot be read is not missing.
  [[nodiscard]] virtual std::optional<Json> value(std::string_view key) const = 0;
  // Stores durably; keys that another process wrote meanwhile stay. Throws std::system_error.
  virtual void setValue(std::string_view key, const Json& value) = 0;

  // Stores what `change` makes of the value that is on the disk now (null where there is none), with no other process
  // in between. Passes on an exception of `change`, and stores nothing then. Throws std::system_error. `change` must
  // not use these preferences.
  virtual void update(std::string_view key, const std::function<Json(const Json* stored)>& change) = 0;
};

}  // namespace orvane
