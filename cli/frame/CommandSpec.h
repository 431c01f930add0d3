#pragma once

#include "cli/frame/ExitStatus.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace orvane::cli {

class Arguments;
class Session;

// The kind of a value, so that a shell can complete it.
enum class ValueKind : std::uint8_t {
  text,
  path,
  folder,
  choice,
  savedProposal,  // the file of one
  rule,           // these two as 'internal-words' lists them
  run,
};

struct OptionSpec {
  enum class Repeat : std::uint8_t { once, any };

  std::string_view name;       // with its dashes: "--category"
  std::string_view valueName;  // as the help shows it; empty for a switch
  std::string_view help;
  ValueKind kind = ValueKind::text;
  std::span<const std::string_view> choices = {};  // the only values allowed, for ValueKind::choice
  Repeat repeat = Repeat::once;
};

// The plain arguments of a command; all of them are of one kind.
struct ArgumentSpec {
  std::string_view name;  // as the help shows it; empty for a command that takes none
  std::string_view help;
  std::size_t min = 0;
  std::size_t max = 0;
  ValueKind kind = ValueKind::text;
  std::span<const std::string_view> choices = {};
};
constexpr std::size_t anyNumber = static_cast<std::size_t>(-1);

enum class Visibility : std::uint8_t { listed, hidden };

// One command. Parsing, help, the man page and the shell completions are all made from this.
struct CommandSpec {
  std::string_view name;     // one word or two: "scan", "history show"
  std::string_view summary;  // one line, without a full stop
  std::string_view details;  // paragraphs for its help, separated by empty lines
  ArgumentSpec arguments;
  std::span<const OptionSpec> options;
  ExitStatus (*run)(Session& session, const Arguments& arguments);
  Visibility visibility = Visibility::listed;
};

}  // namespace orvane::cli
