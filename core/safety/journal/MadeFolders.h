#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <unordered_map>

namespace orvane {

// The folders that moves made, in a file beside the journal: a line for each, only ever appended. Once what was moved
// into them is back, those that are empty can go again. Without the file, or without a line, a folder stays.
class MadeFolders {
 public:
  explicit MadeFolders(const std::string& folder);

  // Canonical paths of new folders. A failure loses nothing: they stay when they are empty.
  void append(std::span<const std::string> folders) const noexcept;
  // Removes each of these folders, and then the folders above it, as far as moves made them and they are empty and
  // still the same.
  void removeEmpty(const std::set<std::string>& folders) const noexcept;

 private:
  // Inodes by path; of a folder that was made several times the last.
  [[nodiscard]] std::unordered_map<std::string, std::uint64_t> read() const;

  std::string m_path;
};

}  // namespace orvane
