#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A text that is not JSON, or JSON that is not what was expected. what() names the key and says what was expected.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class DuplicateKeys : std::uint8_t { refuse, takeFirst };

struct JsonLimits {
  std::size_t bytes = 16 * 1024 * 1024;
  int depth = 64;
  // Of one object that refuses duplicate keys. Keeping keys in order costs the square of their number.
  std::size_t keysPerObject = 4096;
  DuplicateKeys duplicateKeys = DuplicateKeys::refuse;
};

// Reads one JSON document (RFC 8259). The text may come from anywhere: time and memory stay in proportion to its size,
// and what exceeds the limits is refused. Throws JsonError.
[[nodiscard]] Json parseJson(std::string_view text, const JsonLimits& limits = {});
// The same for a document whose key `rows`, an array of objects at its top, may be long: each of them is handed to
// `visit` as soon as it is read and is not kept; the array of what is returned is empty. An exception of `visit` ends
// the reading.
[[nodiscard]] Json parseJsonRows(std::string_view text, const JsonLimits& limits, std::string_view rows,
                                 const std::function<void(const Json& row)>& visit);
// Compact text. Bytes that are not UTF-8 become U+FFFD: keep them out by writing a location as its URL.
[[nodiscard]] std::string jsonText(const Json& value);

// The value of a required key of an object. Throws JsonError when `value` is no object or lacks the key.
[[nodiscard]] const Json& requiredKey(const Json& value, std::string_view key);
// The value of a key; null where it is absent or JSON null. Throws JsonError when `value` is no object.
[[nodiscard]] const Json* optionalKey(const Json& value, std::string_view key);

// Typed values of required keys. Throw JsonError naming the key.
[[nodiscard]] std::string stringAt(const Json& value, std::string_view key);
[[nodiscard]] std::int64_t integerAt(const Json& value, std::string_view key);
[[nodiscard]] bool booleanAt(const Json& value, std::string_view key);
[[nodiscard]] Date dateAt(const Json& value, std::string_view key);
[[nodiscard]] Uuid uuidAt(const Json& value, std::string_view key);
[[nodiscard]] FileUrl urlAt(const Json& value, std::string_view key);
[[nodiscard]] std::vector<FileUrl> urlsAt(const Json& value, std::string_view key);

// Seconds since 2001-01-01T00:00:00Z; whole seconds are written without a fraction. The date must be finite.
[[nodiscard]] Json jsonFromDate(Date date);
// The same as text, appended: the shortest that reads back to the same date.
void appendJsonDate(std::string& text, Date date);
[[nodiscard]] Json jsonFromUuid(const Uuid& uuid);
[[nodiscard]] Json jsonFromUrl(const FileUrl& url);
[[nodiscard]] Json jsonFromUrls(std::span<const FileUrl> urls);

// A value's own type. Throw JsonError naming `what`.
[[nodiscard]] std::string stringFrom(const Json& value, std::string_view what);
[[nodiscard]] std::int64_t integerFrom(const Json& value, std::string_view what);
[[nodiscard]] Date dateFrom(const Json& value, std::string_view what);
[[nodiscard]] std::vector<std::string> stringsFrom(const Json& value, std::string_view what);

}  // namespace orvane
