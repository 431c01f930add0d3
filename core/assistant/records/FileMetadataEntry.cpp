#include "core/assistant/records/FileMetadataEntry.h"

#include "core/base/text/Json.h"

namespace orvane {
namespace {

std::optional<Date> optionalDate(const Json& json, std::string_view key) {
  const auto* value = optionalKey(json, key);
  return value != nullptr ? std::optional(dateFrom(*value, key)) : std::nullopt;
}

}  // namespace

Json FileMetadataEntry::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["filename"] = filename;
  json["fileExtension"] = fileExtension;
  json["sizeBytes"] = sizeBytes;
  if (createdDate) json["createdDate"] = jsonFromDate(*createdDate);
  if (modifiedDate) json["modifiedDate"] = jsonFromDate(*modifiedDate);
  if (lastAccessDate) json["lastAccessDate"] = jsonFromDate(*lastAccessDate);
  json["relativeFolderPath"] = relativeFolderPath;
  return json;
}

FileMetadataEntry FileMetadataEntry::fromJson(const Json& json) {
  return {.id = uuidAt(json, "id"),
          .filename = stringAt(json, "filename"),
          .fileExtension = stringAt(json, "fileExtension"),
          .sizeBytes = integerAt(json, "sizeBytes"),
          .createdDate = optionalDate(json, "createdDate"),
          .modifiedDate = optionalDate(json, "modifiedDate"),
          .lastAccessDate = optionalDate(json, "lastAccessDate"),
          .relativeFolderPath = stringAt(json, "relativeFolderPath")};
}

}  // namespace orvane
