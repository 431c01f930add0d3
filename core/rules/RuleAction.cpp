#include "core/rules/RuleAction.h"

#include "core/base/Json.h"

namespace orvane {

std::string_view rawValue(RuleAction::Type type) noexcept {
  switch (type) {
    case RuleAction::Type::moveToFolder:
      return "moveToFolder";
    case RuleAction::Type::moveToTrash:
      return "moveToTrash";
    case RuleAction::Type::reviewOnly:
      break;
  }
  return "reviewOnly";
}

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
