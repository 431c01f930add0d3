#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/InputLine.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "core/assistant/records/AIProvider.h"
#include "core/assistant/services/KeychainService.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/Json.h"
#include "core/base/text/SecretText.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::cli {
namespace {

constexpr std::string_view cannotStore =
    "the key ring did not take the key: it is locked, or there is none in this session";
constexpr std::size_t maxKeyBytes = 4096;

constexpr std::array<std::string_view, 2> remoteProviders{"anthropic", "openai"};
constexpr ArgumentSpec providerArgument{.name = "PROVIDER",
                                        .help = "anthropic or openai.",
                                        .min = 1,
                                        .max = 1,
                                        .kind = ValueKind::choice,
                                        .choices = remoteProviders};

AIProvider keysProviderFrom(const Arguments& arguments) {
  const auto provider = aiProviderFromRawValue(arguments.plain().front());
  if (!provider || keyAccount(*provider).empty()) throw UsageError("name a provider: anthropic or openai");
  return *provider;
}

// While it lives, a terminal at standard input shows nothing of what is typed.
class NoEcho {
 public:
  NoEcho() {
    if (::tcgetattr(STDIN_FILENO, &m_before) != 0) return;
    auto silent = m_before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    m_isSet = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
  }
  ~NoEcho() {
    if (m_isSet) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
  }
  NoEcho(const NoEcho&) = delete;
  NoEcho& operator=(const NoEcho&) = delete;

 private:
  termios m_before{};
  bool m_isSet = false;
};

bool isControl(char byte) noexcept {
  constexpr unsigned char firstPrintable = 0x20;
  constexpr unsigned char deleteCharacter = 0x7f;
  const auto value = static_cast<unsigned char>(byte);
  return value < firstPrintable || value == deleteCharacter;
}

// Absent when interrupted. Throws UsageError for what is no key.
std::optional<SecretText> readKey(Session& session, AIProvider provider) {
  const auto stop = session.stop();
  const bool isTerminal = ::isatty(STDIN_FILENO) != 0;
  std::string line;
  line.reserve(maxLineBytes);  // so that no copy of a part stays behind
  auto end = LineEnd::complete;
  {
    const NoEcho noEcho;
    if (isTerminal) writeAll(STDERR_FILENO, fmt::format("Key for {}: ", displayName(provider)));
    end = readLine(line, stop);
  }
  if (isTerminal) Session::tell("");
  auto text = trimmed(line);
  wipe(line);
  SecretText key(text);
  wipe(text);
  if (end == LineEnd::interrupted) return std::nullopt;
  if (key.isEmpty()) throw UsageError("no key was given: write it to standard input");
  if (key.view().size() > maxKeyBytes || std::ranges::any_of(key.view(), isControl) || !isValidUtf8(key.view())) {
    throw UsageError("what was given is no key");
  }
  return key;
}

// Says whether a key is stored as far as the key ring tells.
void printStored(Session& session, AIProvider provider) {
  const bool isStored = KeychainService::shared().hasKey(keyAccount(provider));
  if (session.isJson()) {
    Json json = Json::object();
    json["provider"] = rawValue(provider);
    json["stored"] = isStored;
    session.out().line(jsonText(json));
    return;
  }
  session.out().line(fmt::format("{}: {}", displayName(provider), isStored ? "a key is stored" : "no key is stored"));
}

ExitStatus runKeysSet(Session& session, const Arguments& arguments) {
  const auto provider = keysProviderFrom(arguments);
  const auto key = readKey(session, provider);
  if (!key) {
    Session::report("interrupted; nothing was changed");
    return ExitStatus::interrupted;
  }
  const bool isStored = KeychainService::shared().saveKey(*key, keyAccount(provider));
  if (!isStored) Session::report(cannotStore);
  if (isStored || session.isJson()) printStored(session, provider);
  return isStored ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus runKeysDelete(Session& session, const Arguments& arguments) {
  const auto provider = keysProviderFrom(arguments);
  const bool isGone = KeychainService::shared().deleteKey(keyAccount(provider));
  if (!isGone)
    Session::report("the key could not be deleted: the key ring is locked, or there is none in this session");
  if (isGone || session.isJson()) printStored(session, provider);
  return isGone ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus runKeysStatus(Session& session, const Arguments& arguments) {
  const auto provider = keysProviderFrom(arguments);
  printStored(session, provider);
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec keysSetCommand{
    .name = "keys set",
    .summary = "Store a provider's key in the key ring",
    .details =
        "Reads the key from standard input, one line, without showing it. It replaces the one that was stored, and is "
        "kept in your key ring only.",
    .arguments = providerArgument,
    .options = {},
    .run = runKeysSet,
};

constexpr CommandSpec keysDeleteCommand{
    .name = "keys delete",
    .summary = "Remove a provider's key from the key ring",
    .details = "Nothing is wrong when none is stored.",
    .arguments = providerArgument,
    .options = {},
    .run = runKeysDelete,
};

constexpr CommandSpec keysStatusCommand{
    .name = "keys status",
    .summary = "Say whether a provider's key is stored",
    .details = "A key ring that is locked or missing counts as one without a key. The key itself is never shown.",
    .arguments = providerArgument,
    .options = {},
    .run = runKeysStatus,
};

}  // namespace orvane::cli
