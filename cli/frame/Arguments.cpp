#include "cli/frame/Arguments.h"

#include "cli/frame/UsageError.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/FatalError.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

namespace orvane::cli {
namespace {

constexpr std::array common{
    OptionSpec{.name = "--json", .valueName = "", .help = "Print one JSON document (scan: one object a line)."},
    OptionSpec{.name = "--no-progress", .valueName = "", .help = "Show no progress, on a terminal either."},
    OptionSpec{.name = "--help", .valueName = "", .help = "Show this help."},
};

void checkChoice(std::string_view what, std::string_view value, std::span<const std::string_view> choices) {
  if (std::find(choices.begin(), choices.end(), value) != choices.end()) return;
  throw UsageError(fmt::format("{} cannot be '{}'; it is one of {}", what, escapedForDisplay(value),
                               fmt::join(choices.begin(), choices.end(), ", ")));
}

}  // namespace

std::span<const OptionSpec> Arguments::commonOptions() {
  return common;
}

Arguments::Arguments(const CommandSpec& command, std::span<const std::string> words) : m_command(command) {
  while (!words.empty()) {
    const std::string& word = words.front();
    words = words.subspan(1);
    if (word == "--") {
      m_plain.insert(m_plain.end(), words.begin(), words.end());
      break;
    }
    // A lone dash stands for standard input.
    if (word.size() > 1 && word.front() == '-') {
      addOption(word, words);
    } else {
      m_plain.push_back(word);
    }
  }
  // A request for help is answered even if nothing else of the command line fits.
  if (!has("--help")) checkPlain();
}

const OptionSpec* Arguments::find(std::string_view name) const {
  if (name == "-h") name = "--help";
  for (const auto& option : m_command.options) {
    if (option.name == name) return &option;
  }
  for (const auto& option : common) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

void Arguments::addOption(std::string_view word, std::span<const std::string>& rest) {
  const auto equals = word.find('=');
  const std::string_view name = word.substr(0, equals);
  const OptionSpec* option = find(name);
  if (option == nullptr) throw UsageError(fmt::format("there is no option '{}'", escapedForDisplay(name)));
  std::string value;
  if (option->valueName.empty()) {
    if (equals != std::string_view::npos) throw UsageError(fmt::format("{} takes no value", option->name));
  } else if (equals != std::string_view::npos) {
    value = word.substr(equals + 1);
  } else if (!rest.empty()) {
    value = rest.front();
    rest = rest.subspan(1);
  } else {
    throw UsageError(fmt::format("{} needs a value: {}", option->name, option->valueName));
  }
  if (option->kind == ValueKind::choice) checkChoice(option->name, value, option->choices);
  if (!option->valueName.empty() && option->repeat == OptionSpec::Repeat::once && has(option->name)) {
    throw UsageError(fmt::format("{} is given twice", option->name));
  }
  m_options.emplace_back(option, std::move(value));
}

void Arguments::checkPlain() const {
  const auto& expected = m_command.arguments;
  if (m_plain.size() > expected.max) {
    throw UsageError(fmt::format("'{}' is one argument too many", escapedForDisplay(m_plain[expected.max])));
  }
  if (m_plain.size() < expected.min) throw UsageError(fmt::format("{} is missing", expected.name));
  if (expected.kind == ValueKind::choice) {
    for (const auto& word : m_plain) checkChoice(expected.name, word, expected.choices);
  }
}

bool Arguments::has(std::string_view option) const {
  if (find(option) == nullptr) fatalError(fmt::format("the command {} has no option {}", m_command.name, option));
  return std::any_of(m_options.begin(), m_options.end(),
                     [&](const auto& given) { return given.first->name == option; });
}

std::optional<std::string> Arguments::value(std::string_view option) const {
  auto all = values(option);
  if (all.empty()) return std::nullopt;
  return std::move(all.front());
}

std::vector<std::string> Arguments::values(std::string_view option) const {
  std::vector<std::string> result;
  if (!has(option)) return result;
  for (const auto& [spec, value] : m_options) {
    if (spec->name == option) result.push_back(value);
  }
  return result;
}

}  // namespace orvane::cli
