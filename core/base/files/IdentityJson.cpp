#include "core/base/files/IdentityJson.h"

#include "core/base/text/Json.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 5> typeNames{"file", "folder", "link", "other", "unknown"};

std::uint64_t naturalAt(const Json& json, std::string_view key) {
  const auto& value = requiredKey(json, key);
  if (!value.is_number_unsigned()) throw JsonError(fmt::format("\"{}\" must be a natural number", key));
  return value.get<std::uint64_t>();
}

FileType typeFrom(const Json& json) {
  const auto* type = optionalKey(json, "type");
  if (type == nullptr) return FileType::unknown;
  const auto* const found = std::find(typeNames.begin(), typeNames.end(), stringFrom(*type, "type"));
  if (found == typeNames.end()) throw JsonError("\"type\" must be file, folder, link, other or unknown");
  return static_cast<FileType>(std::distance(typeNames.begin(), found));
}

}  // namespace

Json jsonFromIdentity(const ItemIdentity& identity) {
  Json json = Json::object();
  json["device"] = identity.device;
  json["inode"] = identity.inode;
  json["size"] = identity.size;
  json["modified"] = {identity.modified.seconds, identity.modified.nanoseconds};
  json["type"] = typeNames[static_cast<std::size_t>(identity.type)];
  return json;
}

ItemIdentity identityFromJson(const Json& json) {
  const auto& modified = requiredKey(json, "modified");
  if (!modified.is_array() || modified.size() != 2) throw JsonError("\"modified\" must be two numbers");
  return {naturalAt(json, "device"),
          naturalAt(json, "inode"),
          integerAt(json, "size"),
          {integerFrom(modified[0], "modified"), integerFrom(modified[1], "modified")},
          typeFrom(json)};
}

}  // namespace orvane
