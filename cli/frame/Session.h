#pragma once

#include "cli/frame/Interruption.h"
#include "cli/frame/Output.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string_view>

namespace orvane::cli {

class Arguments;

enum class OutputFormat : std::uint8_t { text, json };

// The surroundings of a running command besides its arguments: where it prints, and how it is stopped.
class Session {
 public:
  explicit Session(const Arguments& arguments);

  [[nodiscard]] OutputFormat format() const noexcept { return m_format; }
  [[nodiscard]] bool isJson() const noexcept { return m_format == OutputFormat::json; }
  [[nodiscard]] Output& out() noexcept { return m_out; }

  // One line to standard error, marked with the program's name. Never throws.
  static void report(std::string_view text) noexcept;
  // A line to standard error as it is. Never throws.
  static void tell(std::string_view text) noexcept;

  // Stops when the user interrupts. The signals are caught from the first call on.
  [[nodiscard]] std::stop_token stop();

  // Whether somebody sits there who can be asked.
  [[nodiscard]] static bool canAsk() noexcept;
  [[nodiscard]] bool showsProgress() const noexcept { return m_showsProgress; }
  [[nodiscard]] bool usesColour() const noexcept { return m_usesColour; }

 private:
  OutputFormat m_format;
  bool m_showsProgress;
  bool m_usesColour;
  Output m_out;
  std::optional<Interruption> m_interruption;
};

}  // namespace orvane::cli
