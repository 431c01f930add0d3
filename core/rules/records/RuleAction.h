#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {

// The action that a rule takes on the files that meet its trigger.
class RuleAction {
 public:
  enum class Type : std::uint8_t { moveToFolder, moveToTrash, reviewOnly };

  // "~/" stands for the home folder.
  [[nodiscard]] static RuleAction moveToFolder(std::string path) { return {Type::moveToFolder, std::move(path)}; }
  [[nodiscard]] static RuleAction moveToTrash() { return {Type::moveToTrash, {}}; }
  [[nodiscard]] static RuleAction reviewOnly() { return {Type::reviewOnly, {}}; }

  [[nodiscard]] Type type() const noexcept { return m_type; }
  // The destination of moveToFolder; empty for the others.
  [[nodiscard]] const std::string& path() const noexcept { return m_path; }

  bool operator==(const RuleAction&) const = default;

  [[nodiscard]] Json toJson() const;
  // An unknown type becomes reviewOnly: what a newer or a damaged store holds never turns into a move. Throws
  // JsonError.
  static RuleAction fromJson(const Json& json);

 private:
  RuleAction(Type type, std::string path) : m_type(type), m_path(std::move(path)) {}

  Type m_type;
  std::string m_path;
};

// The case name is also the JSON form.
inline constexpr EnumTable ruleActionTypes({
    RawValueRow{RuleAction::Type::moveToFolder, "moveToFolder"},
    RawValueRow{RuleAction::Type::moveToTrash, "moveToTrash"},
    RawValueRow{RuleAction::Type::reviewOnly, "reviewOnly"},
});

constexpr std::string_view rawValue(RuleAction::Type type) noexcept {
  return ruleActionTypes[type].rawValue;
}

}  // namespace orvane
