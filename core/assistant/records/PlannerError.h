#pragma once

#include "core/base/values/VariantError.h"

#include <fmt/format.h>

#include <cstddef>
#include <string>
#include <variant>

namespace orvane {

struct PlannerErrorCases {
  struct BadServerResponse {
    int status = 0;
    [[nodiscard]] std::string description() const {
      return fmt::format("The server answered with HTTP status {}.", status);
    }
    bool operator==(const BadServerResponse&) const = default;
  };
  struct CannotParseResponse {
    static std::string description() { return "The server's reply has not the form that it should have."; }
    bool operator==(const CannotParseResponse&) const = default;
  };
  struct TooManySteps {
    std::size_t maxSteps = 0;
    [[nodiscard]] std::string description() const {
      return fmt::format("The reply's plan has more than {} steps.", maxSteps);
    }
    bool operator==(const TooManySteps&) const = default;
  };
  using Case = std::variant<BadServerResponse, CannotParseResponse, TooManySteps>;
};

// A planner answered, and the answer is no use. what() is one line for people.
using PlannerError = VariantError<PlannerErrorCases>;

}  // namespace orvane
