#pragma once

#include "core/safety/access/KeptPlaces.h"

#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class Preferences;

// The patterns of places that the user never wants to be offered, shared by all processes. Callable from any thread.
// Each operation throws std::runtime_error where the stored list cannot be read: what nobody can read must not count as
// empty.
class KeepList {
 public:
  // An array of patterns.
  static constexpr std::string_view storageKey = "OrvaneKeepList";

  KeepList(Preferences& preferences, std::string homeFolder);
  static KeepList& shared();

  // In the order in which they were added.
  [[nodiscard]] std::vector<std::string> patterns() const;
  // Those that are on the list already stay in their place. Throws std::invalid_argument, with nothing added, for a
  // text that is no pattern.
  void add(std::span<const std::string> patterns);
  // Returns those that are not on the list; nothing changes where there is one.
  [[nodiscard]] std::vector<std::string> remove(std::span<const std::string> patterns);
  // The pattern that means one place.
  [[nodiscard]] std::string patternFor(const FileUrl& place) const;

  // The places that are kept now.
  [[nodiscard]] KeptPlaces places() const;

 private:
  Preferences& m_preferences;
  std::string m_homeFolder;
};

}  // namespace orvane
