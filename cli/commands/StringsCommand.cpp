#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/localization/LocalizationManager.h"
#include "core/localization/LocalizedStrings.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace orvane::cli {
namespace {

constexpr std::array stringsOptions{
    OptionSpec{.name = "--language",
               .valueName = "TAG",
               .help = "Show this language instead of the one that the window uses.",
               .kind = ValueKind::choice,
               .choices = appLanguageTags},
};

AppLanguage languageFrom(const Arguments& arguments) {
  const auto tag = arguments.value("--language");
  if (!tag) return LocalizationManager::shared().currentLanguage();
  return appLanguageFromRawValue(*tag).value_or(AppLanguage::en);
}

std::vector<std::string_view> keysFrom(const Arguments& arguments) {
  auto known = LocalizedStrings::keys();
  if (arguments.plain().empty()) return known;
  std::vector<std::string_view> result;
  for (const auto& key : arguments.plain()) {
    const auto found = std::find(known.begin(), known.end(), key);
    if (found == known.end()) throw UsageError(fmt::format("there is no text '{}'", escapedForDisplay(key)));
    result.push_back(*found);
  }
  return result;
}

ExitStatus runStrings(Session& session, const Arguments& arguments) {
  const auto language = languageFrom(arguments);
  Json json = Json::object();
  for (const auto key : keysFrom(arguments)) {
    const auto text = LocalizedStrings::lookup(language, key);
    if (session.isJson()) {
      json[std::string(key)] = text;
    } else {
      session.out().line(fmt::format("{}  {}", key, text));
    }
  }
  if (session.isJson()) session.out().line(jsonText(json));
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec stringsCommand{
    .name = "strings",
    .summary = "Show texts of the window, by key",
    .details = "Without KEY it shows all of them. With --json it prints an object from key to text.",
    .arguments = {.name = "KEY", .help = "A text's key, such as nav.cleanup.", .min = 0, .max = anyNumber},
    .options = stringsOptions,
    .run = runStrings,
};

}  // namespace orvane::cli
