#include "core/rules/records/RuleAction.h"

#include "core/base/text/Json.h"

namespace orvane {

Json RuleAction::toJson() const {
  Json json = Json::object();
  json["type"] = rawValue(m_type);
  if (m_type == Type::moveToFolder) json["path"] = m_path;
  return json;
}

RuleAction RuleAction::fromJson(const Json& json) {
  const auto type = stringAt(json, "type");
  if (type == rawValue(Type::moveToTrash)) return moveToTrash();
  if (type == rawValue(Type::moveToFolder)) return moveToFolder(stringAt(json, "path"));
  return reviewOnly();
}

}  // namespace orvane
