#include "core/safety/access/KeepList.h"

#include "core/base/text/Json.h"
#include "core/platform/Preferences.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace orvane {
namespace {

using Texts = std::vector<std::string>;

[[noreturn]] void throwUnreadable(std::string_view why) {
  throw std::runtime_error(
      fmt::format("the keep list cannot be read, so nothing is offered ({}); it is \"{}\" in "
                  "preferences.json",
                  why, KeepList::storageKey));
}

Texts textsFrom(const Json* stored) {
  if (stored == nullptr || stored->is_null()) return {};
  try {
    return stringsFrom(*stored, KeepList::storageKey);
  } catch (const JsonError& error) {
    throwUnreadable(error.what());
  }
}

bool holds(const Texts& texts, const std::string& text) {
  return std::ranges::find(texts, text) != texts.end();
}

}  // namespace

KeepList::KeepList(Preferences& preferences, std::string homeFolder)
    : m_preferences(preferences), m_homeFolder(std::move(homeFolder)) {}

Texts KeepList::patterns() const {
  const auto stored = m_preferences.value(storageKey);
  return textsFrom(stored ? &*stored : nullptr);
}

void KeepList::add(std::span<const std::string> patterns) {
  for (const auto& pattern : patterns) static_cast<void>(KeepPattern::read(pattern, m_homeFolder));
  m_preferences.update(storageKey, [&](const Json* stored) {
    auto texts = textsFrom(stored);
    for (const auto& pattern : patterns) {
      if (!holds(texts, pattern)) texts.push_back(pattern);
    }
    return Json(texts);
  });
}

Texts KeepList::remove(std::span<const std::string> patterns) {
  Texts missing;
  m_preferences.update(storageKey, [&](const Json* stored) {
    auto texts = textsFrom(stored);
    for (const auto& pattern : patterns) {
      if (!holds(texts, pattern)) missing.push_back(pattern);
    }
    if (missing.empty()) std::erase_if(texts, [&](const auto& text) { return std::ranges::count(patterns, text) > 0; });
    return Json(texts);
  });
  return missing;
}

std::string KeepList::patternFor(const FileUrl& place) const {
  return KeepPattern::textFor(place, m_homeFolder);
}

KeptPlaces KeepList::places() const {
  std::vector<KeepPattern> read;
  for (const auto& text : patterns()) {
    try {
      read.push_back(KeepPattern::read(text, m_homeFolder));
    } catch (const std::invalid_argument& error) {
      throwUnreadable(error.what());
    }
  }
  return KeptPlaces(std::move(read));
}

}  // namespace orvane
