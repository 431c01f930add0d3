#pragma once

#include <stdexcept>
#include <string>
#include <variant>

namespace orvane {

// A remote planner answered, and the answer is no use. what() is one line for people.
class PlannerError : public std::runtime_error {
 public:
  struct BadServerResponse {
    int status = 0;
    bool operator==(const BadServerResponse&) const = default;
  };
  struct CannotParseResponse {
    bool operator==(const CannotParseResponse&) const = default;
  };
  using Case = std::variant<BadServerResponse, CannotParseResponse>;

  explicit PlannerError(Case which);
  [[nodiscard]] const Case& which() const noexcept { return m_which; }
  bool operator==(const PlannerError& other) const { return m_which == other.m_which; }

 private:
  Case m_which;
};

}  // namespace orvane
