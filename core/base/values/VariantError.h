#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

namespace orvane {

// The error of a component: one of its cases, with what belongs to it. `Cases` holds a struct for each, which can be
// compared and has a `description()` for people, and `Case`, their variant.
template <typename Cases>
class VariantError : public std::runtime_error, public Cases {
 public:
  using typename Cases::Case;

  explicit VariantError(Case which)
      : std::runtime_error(std::visit([](const auto& known) { return std::string(known.description()); }, which)),
        m_which(std::move(which)) {}

  [[nodiscard]] const Case& which() const noexcept { return m_which; }
  bool operator==(const VariantError& other) const { return m_which == other.m_which; }

 private:
  Case m_which;
};

}  // namespace orvane
