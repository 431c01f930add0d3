#pragma once

#include "core/base/files/FileUrl.h"
#include "core/safety/records/KeepPattern.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The kept places, as they were at one moment. Not for several threads at a time.
class KeptPlaces {
 public:
  KeptPlaces() = default;
  explicit KeptPlaces(std::vector<KeepPattern> patterns);

  [[nodiscard]] bool empty() const noexcept { return m_patterns.empty() && m_places.empty(); }
  // The pattern, as the user wrote it, that keeps an item where it is: one that means it, a folder that it lies in, or
  // something in it. Absent where none does. Links are followed in the item's folder, never at the item itself.
  // Looks into the item where it is a folder and a pattern may mean something in it.
  [[nodiscard]] const std::string* keeperOf(const FileUrl& item);

 private:
  [[nodiscard]] const std::string* keeperAt(std::string_view path) const;
  [[nodiscard]] const std::string* keeperBelow(const std::string& item) const;

  std::vector<KeepPattern> m_patterns;                       // of several places
  std::map<std::string, std::string, std::less<>> m_places;  // each kept path, and its pattern
  std::string m_lastFolder;
  std::string m_lastCanonical;
};

}  // namespace orvane
