#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Whether a name fits a pattern in which "*" stands for any characters, none included.
[[nodiscard]] bool fitsWildcard(std::string_view name, std::string_view pattern) noexcept;

// The same of a component of a path, in which "[0-9]" stands for a digit too.
[[nodiscard]] bool fitsComponent(std::string_view name, std::string_view pattern) noexcept;

// A pattern for the end of a path, component by component. An empty pattern fits where the path has ended.
class PathPattern {
 public:
  explicit PathPattern(std::string_view pattern);
  // The patterns that a text with "{a,b}" stands for, one for each of the alternatives, in order. An alternative may
  // hold slashes, and no braces.
  [[nodiscard]] static std::vector<PathPattern> alternatives(std::string_view text);

  enum class Fit : std::uint8_t {
    none,
    above,  // what fits may lie below the path
    exact,
    below,  // a folder above the path fits
  };
  // `relative` is a path without a slash at either end.
  [[nodiscard]] Fit fit(std::string_view relative) const noexcept;
  // How many bytes of `relative`, which fits or lies below what does, the pattern covers.
  [[nodiscard]] std::size_t coveredBytes(std::string_view relative) const noexcept;

  // Whether it fits one text only, without any "*", and that text.
  [[nodiscard]] bool isPlain() const noexcept;
  [[nodiscard]] std::string text() const;
  [[nodiscard]] const std::vector<std::string>& components() const noexcept { return m_components; }

 private:
  std::vector<std::string> m_components;
};

}  // namespace orvane
