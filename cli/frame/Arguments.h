#pragma once

#include "cli/frame/CommandSpec.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane::cli {

// The arguments of a command, checked against its definition. Every text is exactly what was typed.
class Arguments {
 public:
  // `words` are what follows the command's name. Words after "--" are plain arguments, whatever they look like.
  // Throws UsageError.
  Arguments(const CommandSpec& command, std::span<const std::string> words);

  // Options that every command takes.
  static std::span<const OptionSpec> commonOptions();

  [[nodiscard]] const CommandSpec& command() const noexcept { return m_command; }
  // `option` must be one of the command's or a common one.
  [[nodiscard]] bool has(std::string_view option) const;
  [[nodiscard]] std::optional<std::string> value(std::string_view option) const;
  [[nodiscard]] std::vector<std::string> values(std::string_view option) const;
  [[nodiscard]] const std::vector<std::string>& plain() const noexcept { return m_plain; }

 private:
  const OptionSpec* find(std::string_view name) const;
  void addOption(std::string_view word, std::span<const std::string>& rest);
  void checkPlain() const;

  const CommandSpec& m_command;
  std::vector<std::pair<const OptionSpec*, std::string>> m_options;
  std::vector<std::string> m_plain;
};

}  // namespace orvane::cli
