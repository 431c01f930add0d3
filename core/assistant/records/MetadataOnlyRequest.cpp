#include "core/assistant/records/MetadataOnlyRequest.h"

#include "core/base/text/Json.h"

#include <fmt/format.h>

#include <iterator>

namespace orvane {
namespace {

const Json& arrayAt(const Json& json, std::string_view key) {
  const auto& value = requiredKey(json, key);
  if (!value.is_array()) throw JsonError(fmt::format("\"{}\" must be an array", key));
  return value;
}

}  // namespace

Json MetadataOnlyRequest::toJson() const {
  Json json = Json::object();
  json["userPrompt"] = userPrompt;
  auto& entries = json["files"] = Json::array();
  for (const auto& file : files) entries.push_back(file.toJson());
  json["targetFolders"] = targetFolders;
  return json;
}

MetadataOnlyRequest MetadataOnlyRequest::fromJson(const Json& json) {
  MetadataOnlyRequest request;
  request.userPrompt = stringAt(json, "userPrompt");
  for (const auto& entry : arrayAt(json, "files")) request.files.push_back(FileMetadataEntry::fromJson(entry));
  for (const auto& folder : arrayAt(json, "targetFolders")) {
    request.targetFolders.push_back(stringFrom(folder, "targetFolders"));
  }
  return request;
}

std::string MetadataOnlyRequest::userMessage() const {
  auto message = fmt::format("User goal: {}\nCandidate sample files:\n", userPrompt);
  std::string_view separator;
  for (const auto& file : files) {
    fmt::format_to(std::back_inserter(message), "{}{} (ext: {}, size: {}, folder: {})", separator, file.filename,
                   file.fileExtension, file.sizeBytes, file.relativeFolderPath);
    separator = "\n";
  }
  return message;
}

}  // namespace orvane
