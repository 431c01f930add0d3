#include "cli/pages/Help.h"

#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace orvane::cli {
namespace {

constexpr std::size_t lineWidth = 80;

// The words of `text` in lines that fit, each after the first indented. Empty lines stay.
std::string wrapped(std::string_view text, std::size_t indent) {
  std::string result;
  std::size_t column = indent;
  bool isLineStart = true;
  while (!text.empty()) {
    const auto end = std::min(text.find_first_of(" \n"), text.size());
    const auto word = text.substr(0, end);
    if (!isLineStart && column + 1 + word.size() > lineWidth) {
      result += "\n" + std::string(indent, ' ');
      column = indent;
      isLineStart = true;
    }
    if (!isLineStart) ++column;
    result += fmt::format("{}{}", isLineStart ? "" : " ", word);
    column += word.size();
    isLineStart = false;
    if (end < text.size() && text[end] == '\n') {
      result += "\n" + std::string(indent, ' ');
      column = indent;
      isLineStart = true;
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

using Entry = std::pair<std::string, std::string>;

std::string listed(std::string_view title, const std::vector<Entry>& entries) {
  if (entries.empty()) return {};
  std::size_t width = 0;
  for (const auto& [label, help] : entries) width = std::max(width, label.size());
  std::string result = fmt::format("\n{}:\n", title);
  for (const auto& [label, help] : entries) {
    result += fmt::format("  {:<{}}  {}\n", label, width, wrapped(help, width + 4));
  }
  return result;
}

std::string optionHelp(const OptionSpec& option) {
  if (option.choices.empty()) return std::string(option.help);
  return fmt::format("{} One of {}.", option.help, fmt::join(option.choices.begin(), option.choices.end(), ", "));
}

std::vector<Entry> optionEntries(std::span<const OptionSpec> options) {
  std::vector<Entry> result;
  for (const auto& option : options) result.emplace_back(optionLabel(option), optionHelp(option));
  return result;
}

}  // namespace

std::string optionLabel(const OptionSpec& option) {
  return option.valueName.empty() ? std::string(option.name) : fmt::format("{} {}", option.name, option.valueName);
}

std::string usageOf(const CommandSpec& command) {
  const auto& arguments = command.arguments;
  std::string result = fmt::format("{} {} [OPTIONS]", programName, command.name);
  if (!arguments.name.empty()) {
    const auto name = fmt::format("{}{}", arguments.name, arguments.max > 1 ? "..." : "");
    result += arguments.min > 0 ? " " + name : fmt::format(" [{}]", name);
  }
  return result;
}

std::string programHelp() {
  std::vector<Entry> commands;
  for (const auto* command : allCommands()) {
    if (command->visibility == Visibility::listed) commands.emplace_back(command->name, command->summary);
  }
  auto options = optionEntries(Arguments::commonOptions());
  options.emplace_back("--version", "Print the version.");
  return fmt::format("Usage: {0} COMMAND [OPTIONS] [ARGUMENTS]\n\n{0}: {1}\n{2}{3}\n{4}\n", programName, programSummary,
                     listed("Commands", commands), listed("Options, anywhere on the line", options),
                     fmt::format("'{} COMMAND --help' tells more about a command.", programName));
}

std::vector<const CommandSpec*> commandsOfFamily(std::string_view family) {
  std::vector<const CommandSpec*> result;
  for (const auto* command : allCommands()) {
    const auto& name = command->name;
    const bool isOfFamily = name.starts_with(family) && name.substr(family.size()).starts_with(' ');
    if (isOfFamily && command->visibility == Visibility::listed) result.push_back(command);
  }
  return result;
}

std::string familyHelp(std::string_view family) {
  std::vector<Entry> commands;
  for (const auto* command : commandsOfFamily(family)) commands.emplace_back(command->name, command->summary);
  return fmt::format("Usage: {0} {1} COMMAND [OPTIONS] [ARGUMENTS]\n{2}\n{3}\n", programName, family,
                     listed("Commands", commands),
                     fmt::format("'{} {} COMMAND --help' tells more about a command.", programName, family));
}

std::string commandHelp(const CommandSpec& command) {
  const auto& arguments = command.arguments;
  std::vector<Entry> plain;
  if (!arguments.name.empty()) plain.emplace_back(arguments.name, arguments.help);
  auto options = optionEntries(command.options);
  for (auto& entry : optionEntries(Arguments::commonOptions())) options.push_back(std::move(entry));
  return fmt::format("Usage: {}\n\n{}.\n\n{}\n{}{}", usageOf(command), wrapped(command.summary, 0),
                     wrapped(command.details, 0), listed("Arguments", plain), listed("Options", options));
}

}  // namespace orvane::cli
