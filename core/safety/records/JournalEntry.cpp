#include "core/safety/records/JournalEntry.h"

#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/values/Calendar.h"
#include "core/base/values/HashCombine.h"

#include <fmt/format.h>

namespace orvane {

std::string JournalEntry::formattedSize() const {
  return formatByteCount(fileSize);
}

Json JournalEntry::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["runId"] = jsonFromUuid(runId);
  json["timestamp"] = jsonFromDate(timestamp);
  json["originalURL"] = jsonFromUrl(originalURL);
  json["trashedURL"] = jsonFromUrl(trashedURL);
  json["fileSize"] = fileSize;
  if (checksum) json["checksum"] = *checksum;
  json["action"] = rawValue(action);
  return json;
}

// By hand: a large run writes each entry several times, and building JSON values or even single texts takes most of
// that time. Identifiers and URLs hold nothing that has to be escaped.
void JournalEntry::appendJsonText(std::string& text) const {
  text += R"({"id":")";
  id.appendTo(text);
  text += R"(","runId":")";
  runId.appendTo(text);
  text += R"(","timestamp":)";
  appendJsonDate(text, timestamp);
  text += R"(,"originalURL":")";
  originalURL.appendAbsoluteString(text);
  text += R"(","trashedURL":")";
  trashedURL.appendAbsoluteString(text);
  text += R"(","fileSize":)";
  text += fmt::format_int(fileSize).c_str();
  if (checksum) {
    text += R"(,"checksum":)";
    text += orvane::jsonText(Json(*checksum));
  }
  text += R"(,"action":")";
  text += rawValue(action);
  text += R"("})";
}

JournalEntry JournalEntry::fromJson(const Json& json) {
  JournalEntry entry;
  entry.id = uuidAt(json, "id");
  entry.runId = uuidAt(json, "runId");
  entry.timestamp = dateAt(json, "timestamp");
  entry.originalURL = urlAt(json, "originalURL");
  entry.trashedURL = urlAt(json, "trashedURL");
  entry.fileSize = integerAt(json, "fileSize");
  if (const auto* checksum = optionalKey(json, "checksum")) entry.checksum = stringFrom(*checksum, "checksum");
  const auto action = journalActions.find(stringAt(json, "action"));
  if (!action) throw JsonError(fmt::format("unknown \"action\" {}", stringAt(json, "action")));
  entry.action = *action;
  return entry;
}

std::string CleanupRunSummary::formattedSize() const {
  return formatByteCount(totalBytes);
}

std::string CleanupRunSummary::formattedDate() const {
  return formatDateTime(timestamp);
}

Json CleanupRunSummary::toJson() const {
  Json json = Json::object();
  json["runId"] = jsonFromUuid(runId);
  json["timestamp"] = jsonFromDate(timestamp);
  json["itemCount"] = itemCount;
  json["totalBytes"] = totalBytes;
  json["isRestored"] = isRestored;
  return json;
}

std::string CleanupRunSummary::jsonText() const {
  return orvane::jsonText(toJson());
}

CleanupRunSummary CleanupRunSummary::fromJson(const Json& json) {
  CleanupRunSummary run;
  run.runId = uuidAt(json, "runId");
  run.timestamp = dateAt(json, "timestamp");
  run.itemCount = integerAt(json, "itemCount");
  run.totalBytes = integerAt(json, "totalBytes");
  run.isRestored = booleanAt(json, "isRestored");
  return run;
}

}  // namespace orvane

std::size_t std::hash<orvane::JournalEntry>::operator()(const orvane::JournalEntry& entry) const noexcept {
  std::size_t seed = 0;
  orvane::hashCombine(seed, entry.id);
  orvane::hashCombine(seed, entry.runId);
  orvane::hashCombine(seed, orvane::referenceSeconds(entry.timestamp));
  orvane::hashCombine(seed, entry.originalURL);
  orvane::hashCombine(seed, entry.trashedURL);
  orvane::hashCombine(seed, entry.fileSize);
  orvane::hashCombine(seed, entry.checksum);
  orvane::hashCombine(seed, orvane::rawValue(entry.action));
  return seed;
}
