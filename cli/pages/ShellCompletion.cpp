#include "cli/pages/ShellCompletion.h"

#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/pages/Help.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <set>
#include <string_view>
#include <vector>

namespace orvane::cli {
namespace {

std::vector<const CommandSpec*> listedCommands() {
  std::vector<const CommandSpec*> result;
  for (const auto* command : allCommands()) {
    if (command->visibility == Visibility::listed) result.push_back(command);
  }
  return result;
}

std::vector<const OptionSpec*> optionsOf(const CommandSpec& command) {
  std::vector<const OptionSpec*> result;
  for (const auto& option : command.options) result.push_back(&option);
  for (const auto& option : Arguments::commonOptions()) result.push_back(&option);
  return result;
}

std::string_view firstWord(std::string_view name) {
  return name.substr(0, name.find(' '));
}

std::string_view secondWord(std::string_view name) {
  const auto space = name.find(' ');
  return space == std::string_view::npos ? std::string_view() : name.substr(space + 1);
}

// The first words of all commands, and what may follow one of them.
std::vector<std::string_view> firstWords() {
  std::vector<std::string_view> result;
  for (const auto* command : listedCommands()) {
    const auto word = firstWord(command->name);
    if (std::find(result.begin(), result.end(), word) == result.end()) result.push_back(word);
  }
  return result;
}

std::vector<std::string_view> secondWordsAfter(std::string_view first) {
  std::vector<std::string_view> result;
  for (const auto* command : listedCommands()) {
    const auto second = secondWord(command->name);
    if (firstWord(command->name) == first && !second.empty()) result.push_back(second);
  }
  return result;
}

template <typename Words>
std::string joined(const Words& words) {
  return fmt::format("{}", fmt::join(words.begin(), words.end(), " "));
}

// The statement that completes a value in bash.
std::string bashValue(ValueKind kind, std::span<const std::string_view> choices) {
  switch (kind) {
    case ValueKind::path:
      return "_filedir";
    case ValueKind::folder:
      return "_filedir -d";
    case ValueKind::choice:
      return fmt::format(R"(COMPREPLY=($(compgen -W "{}" -- "$cur")))", joined(choices));
    case ValueKind::savedProposal:
      return "_filedir json";
    case ValueKind::rule:
      return "_orvanectl_words rules";
    case ValueKind::run:
      return "_orvanectl_words runs";
    case ValueKind::text:
      break;
  }
  return ":";
}

std::string bashCase(const CommandSpec& command) {
  std::string result = fmt::format("    \"{}\")\n", command.name);
  result += "      case $prev in\n";
  for (const auto& option : command.options) {
    if (option.valueName.empty()) continue;
    result += fmt::format("        {}) {}; return ;;\n", option.name, bashValue(option.kind, option.choices));
  }
  result += "      esac\n";
  std::vector<std::string_view> names;
  for (const auto* option : optionsOf(command)) names.push_back(option->name);
  result += fmt::format("      if [[ $cur == -* ]]; then COMPREPLY=($(compgen -W \"{}\" -- \"$cur\")); return; fi\n",
                        joined(names));
  result += fmt::format("      {}\n      ;;\n", bashValue(command.arguments.kind, command.arguments.choices));
  return result;
}

// A text in single quotes, for zsh and fish alike once `special` characters are escaped too.
std::string quoted(std::string_view text, std::string_view special, std::string_view quote) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += quote;
      continue;
    }
    if (special.find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result + "'";
}

std::string zshValue(ValueKind kind, std::span<const std::string_view> choices) {
  switch (kind) {
    case ValueKind::path:
      return "_files";
    case ValueKind::folder:
      return "_files -/";
    case ValueKind::choice:
      return fmt::format("({})", joined(choices));
    case ValueKind::savedProposal:
      return "_files -g \"*.json\"";
    case ValueKind::rule:
      return "_orvanectl_words rules";
    case ValueKind::run:
      return "_orvanectl_words runs";
    case ValueKind::text:
      break;
  }
  return " ";
}

std::string zshQuoted(std::string_view text) {
  return quoted(text, "[]:\\", "'\\''");
}

std::string zshArguments(const CommandSpec& command) {
  std::string result;
  for (const auto* option : optionsOf(command)) {
    const bool repeats = option->repeat == OptionSpec::Repeat::any;
    std::string text = zshQuoted(option->help);
    text =
        fmt::format("'{}{}[{}]", repeats ? "*" : "", option->name, std::string_view(text).substr(1, text.size() - 2));
    if (!option->valueName.empty()) {
      text += fmt::format(":{}:{}", option->valueName, zshValue(option->kind, option->choices));
    }
    result += fmt::format(" \\\n        {}'", text);
  }
  const auto& arguments = command.arguments;
  if (!arguments.name.empty()) {
    result += fmt::format(" \\\n        '{}:{}:{}'", arguments.max > 1 ? "*" : "1", arguments.name,
                          zshValue(arguments.kind, arguments.choices));
  }
  return result;
}

std::string fishQuoted(std::string_view text) {
  return quoted(text, "\\", "\\'");
}

std::string fishCondition(const CommandSpec& command) {
  const auto second = secondWord(command.name);
  std::string result = fmt::format("__fish_seen_subcommand_from {}", firstWord(command.name));
  if (!second.empty()) return fmt::format("{}; and __fish_seen_subcommand_from {}", result, second);
  const auto others = secondWordsAfter(command.name);
  if (!others.empty()) result += fmt::format("; and not __fish_seen_subcommand_from {}", joined(others));
  return result;
}

std::string fishValue(ValueKind kind, std::span<const std::string_view> choices) {
  switch (kind) {
    case ValueKind::path:
      return "-F";
    case ValueKind::folder:
      return "-f -a '(__fish_complete_directories)'";
    case ValueKind::choice:
      return fmt::format("-f -a '{}'", joined(choices));
    case ValueKind::savedProposal:
      return "-f -a '(__fish_complete_suffix .json)'";
    case ValueKind::rule:
      return "-f -a '(orvanectl internal-words rules 2>/dev/null)'";
    case ValueKind::run:
      return "-f -a '(orvanectl internal-words runs 2>/dev/null)'";
    case ValueKind::text:
      break;
  }
  return "-f";
}

}  // namespace

std::string bashCompletion() {
  std::string cases;
  std::string seconds;
  for (const auto* command : listedCommands()) cases += bashCase(*command);
  for (const auto word : firstWords()) {
    const auto others = secondWordsAfter(word);
    if (!others.empty()) seconds += fmt::format("    {}) seconds=\"{}\" ;;\n", word, joined(others));
  }
  return fmt::format(R"(# bash completion for orvanectl
# The words of a kind that begin with what was typed, with or without quotation marks.
_orvanectl_words() {{
  local typed=${{cur#[\"\']}} word
  typed=${{typed//\\/}}
  while IFS=$'\t' read -r word _; do
    [[ $word == "$typed"* ]] || continue
    [[ $cur == [\"\']* ]] || printf -v word %q "$word"
    COMPREPLY+=("$word")
  done < <(orvanectl internal-words "$1" 2>/dev/null)
}}
_orvanectl() {{
  local cur prev words cword
  _init_completion || return
  local command="" first="" seconds="" word i
  for ((i = 1; i < cword; i++)); do
    word=${{words[i]}}
    [[ $word == -* ]] && continue
    if [[ -z $first ]]; then first=$word; else command="$first $word"; break; fi
  done
  if [[ -z $first ]]; then
    COMPREPLY=($(compgen -W "{} --json --no-progress --help --version" -- "$cur"))
    return
  fi
  case $first in
{}  esac
  if [[ -z $command && -n $seconds && $cur != -* ]]; then
    COMPREPLY=($(compgen -W "$seconds" -- "$cur"))
    return
  fi
  [[ " $seconds " == *" ${{command#* }} "* && -n $command ]] || command=$first
  case $command in
{}  esac
}} &&
  complete -F _orvanectl orvanectl
)",
                     joined(firstWords()), seconds, cases);
}

std::string zshCompletion() {
  std::string descriptions;
  std::string cases;
  std::set<std::string_view> described;
  for (const auto* command : listedCommands()) {
    const auto first = firstWord(command->name);
    if (described.insert(first).second) {
      const auto summary = zshQuoted(command->summary);
      descriptions += fmt::format("    '{}:{}'\n", first, std::string_view(summary).substr(1, summary.size() - 2));
    }
    cases += fmt::format("      \"{}\")\n        _arguments -s{}\n        ;;\n", command->name, zshArguments(*command));
  }
  std::string seconds;
  for (const auto word : firstWords()) {
    const auto others = secondWordsAfter(word);
    if (!others.empty()) seconds += fmt::format("    {}) seconds=({}) ;;\n", word, joined(others));
  }
  return fmt::format(R"(#compdef orvanectl
_orvanectl_words() {{
  local -a words_of_kind
  local line
  for line in "${{(@f)$(orvanectl internal-words $1 2>/dev/null)}}"; do
    [[ -n $line ]] && words_of_kind+=("${{${{line%%$'\t'*}}//:/\\:}}:${{line#*$'\t'}}")
  done
  _describe $1 words_of_kind
}}
_orvanectl() {{
  local -a commands seconds
  commands=(
{}  )
  if (( CURRENT == 2 )); then
    _describe command commands
    return
  fi
  local command=$words[2]
  case $command in
{}  esac
  if (( CURRENT == 3 )) && (( $#seconds )) && [[ $words[3] != -* ]]; then
    compadd -- $seconds
  fi
  if (( $seconds[(Ie)$words[3]] )) && (( CURRENT > 3 )); then
    command="$command $words[3]"
    shift words
    (( CURRENT-- ))
  fi
  shift words
  (( CURRENT-- ))
  case $command in
{}  esac
}}
_orvanectl "$@"
)",
                     descriptions, seconds, cases);
}

std::string fishCompletion() {
  std::string result = "# fish completion for orvanectl\ncomplete -c orvanectl -f\n";
  std::set<std::string_view> described;
  for (const auto* command : listedCommands()) {
    const auto first = firstWord(command->name);
    const auto second = secondWord(command->name);
    if (!second.empty()) {
      result += fmt::format(
          "complete -c orvanectl -n '__fish_seen_subcommand_from {0}; and not __fish_seen_subcommand_from {1}' -a {2} "
          "-d "
          "{3}\n",
          first, joined(secondWordsAfter(first)), second, fishQuoted(command->summary));
    } else if (described.insert(first).second) {
      result += fmt::format("complete -c orvanectl -n __fish_use_subcommand -a {} -d {}\n", first,
                            fishQuoted(command->summary));
    }
    for (const auto* option : optionsOf(*command)) {
      result += fmt::format("complete -c orvanectl -n '{}' -l {} -d {}", fishCondition(*command),
                            option->name.substr(2), fishQuoted(option->help));
      if (!option->valueName.empty()) result += fmt::format(" -r {}", fishValue(option->kind, option->choices));
      result += '\n';
    }
    if (!command->arguments.name.empty()) {
      result += fmt::format("complete -c orvanectl -n '{}' {}\n", fishCondition(*command),
                            fishValue(command->arguments.kind, command->arguments.choices));
    }
  }
  return result;
}

}  // namespace orvane::cli
