#include "cli/frame/RunReference.h"

#include "cli/frame/UsageError.h"
#include "core/base/text/HexDigit.h"
#include "core/base/text/UnicodeText.h"
#include "core/safety/records/UndoError.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string>

namespace orvane::cli {
namespace {

constexpr std::size_t identifierLength = 36;
constexpr std::size_t minPrefixLength = 8;

bool canBeginIdentifier(std::string_view text) {
  return !text.empty() && text.size() <= identifierLength &&
         std::all_of(text.begin(), text.end(), [](char c) { return c == '-' || hexValue(c) >= 0; });
}

}  // namespace

const CleanupRunSummary& runMeantBy(std::string_view text, std::span<const CleanupRunSummary> runs) {
  if (!canBeginIdentifier(text)) {
    throw UsageError(fmt::format("'{}' is no run; 'orvanectl history' lists them", escapedForDisplay(text)));
  }
  const std::string wanted = uppercased(text);
  const CleanupRunSummary* found = nullptr;
  for (const auto& run : runs) {
    if (!run.runId.toString().starts_with(wanted)) continue;
    if (found != nullptr) throw UsageError(fmt::format("several runs begin with '{}': give more of the name", wanted));
    found = &run;
  }
  if (found != nullptr) return *found;
  if (const auto id = Uuid::parse(wanted)) throw UndoError(UndoError::RunNotFound{*id});
  throw std::runtime_error(fmt::format("no recorded run begins with '{}'; 'orvanectl history' lists them", wanted));
}

std::size_t distinctPrefixLength(std::span<const CleanupRunSummary> runs) {
  for (std::size_t length = minPrefixLength; length < identifierLength; ++length) {
    std::set<std::string> prefixes;
    for (const auto& run : runs) prefixes.insert(run.runId.toString().substr(0, length));
    if (prefixes.size() == runs.size()) return length;
  }
  return identifierLength;
}

}  // namespace orvane::cli
