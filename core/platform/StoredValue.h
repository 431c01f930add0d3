#pragma once

#include "core/base/text/Json.h"
#include "core/platform/Preferences.h"

#include <optional>
#include <string_view>

namespace orvane {

// A value in the form that its preference has; the default where nothing is stored or what is does not decode.
template <typename Value>
Value decodedOrDefault(const Json* stored) {
  if (stored == nullptr) return {};
  try {
    return Value::fromJson(*stored);
  } catch (const JsonError&) {
    return {};
  }
}

// The value that is stored now. `decode` is given null where there is none.
template <typename Value>
Value storedValue(const Preferences& preferences, std::string_view key,
                  Value (*decode)(const Json* stored) = decodedOrDefault<Value>) {
  const auto stored = preferences.value(key);
  return decode(stored ? &*stored : nullptr);
}

// Applies a change to the value that is stored now, stores the whole, and returns it. Throws std::system_error.
template <typename Value, typename Change>
Value changeStoredValue(Preferences& preferences, std::string_view key, Change change,
                        Value (*decode)(const Json* stored) = decodedOrDefault<Value>) {
  Value value;
  preferences.update(key, [&](const Json* stored) {
    value = decode(stored);
    change(value);
    if constexpr (requires { value.toJson(); }) {
      return value.toJson();
    } else {
      return Json(value);
    }
  });
  return value;
}

}  // namespace orvane
