#include "core/organizer/topics/TopicResponseParser.h"

#include "core/base/text/EnclosedObject.h"
#include "core/base/text/Json.h"
#include "core/organizer/topics/TopicNames.h"

#include <utility>

namespace orvane {

std::map<std::string, std::string> TopicResponseParser::parse(std::string_view reply,
                                                              const std::set<std::string>& allowedNames) {
  std::map<std::string, std::string> result;
  Json object;
  try {
    object = parseJson(enclosedObject(reply), {.duplicateKeys = DuplicateKeys::takeFirst});
  } catch (const JsonError&) {
    return result;
  }
  if (!object.is_object()) return result;
  for (const auto& [name, value] : object.items()) {
    if (!value.is_string() || !allowedNames.contains(name)) continue;
    if (auto topic = TopicNames::sanitize(value.get<std::string>())) result.emplace(name, *std::move(topic));
  }
  return result;
}

}  // namespace orvane
