#include "cli/frame/Consent.h"

#include "cli/frame/Arguments.h"
#include "cli/frame/InputLine.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>
#include <unistd.h>

#include <stop_token>
#include <string>

namespace orvane::cli {
namespace {

Answer answerOf(std::string_view line) {
  const auto word = lowercased(trimmed(line));
  return word == "y" || word == "yes" ? Answer::yes : Answer::no;
}

Answer readAnswer(const std::stop_token& stop) {
  std::string line;
  switch (readLine(line, stop)) {
    case LineEnd::complete:
      return answerOf(line);
    case LineEnd::interrupted:
      return Answer::interrupted;
    case LineEnd::endOfInput:
      break;
  }
  // Without the end of a line nobody has said yes to the end.
  return Answer::no;
}

}  // namespace

void requireConsentPossible(const Arguments& arguments, std::string_view effect) {
  if (arguments.has("--yes") || Session::canAsk()) return;
  throw UsageError(fmt::format("{}, and nobody can be asked here: add --yes to go ahead", effect));
}

Answer askConsent(Session& session, const Arguments& arguments, std::string_view question) {
  if (arguments.has("--yes")) return Answer::yes;
  const auto stop = session.stop();
  session.out().flush();
  writeAll(STDERR_FILENO, fmt::format("{} [y/N] ", question));
  const auto answer = readAnswer(stop);
  if (answer == Answer::interrupted) Session::tell("");
  return answer;
}

}  // namespace orvane::cli
