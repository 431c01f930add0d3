#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace orvane {

// Gives out names in folders so that neither two proposals nor a proposal and what is on the disk share one. Each
// folder is listed once, when it is first asked about; many items of one name do not search many names each.
class ProposedNames {
 public:
  enum class Sources : std::uint8_t {
    manyFolders,
    oneFolder,  // the names that are asked for all differ
  };
  explicit ProposedNames(Sources sources = Sources::manyFolders) : m_sources(sources) {}

  // `name`, or its first free numbered form counted from 1. The place is taken from then on.
  [[nodiscard]] FileUrl take(const FileUrl& folder, std::string_view name);
  // For a place that is taken already.
  void note(const FileUrl& place);

 private:
  using Names = std::pmr::unordered_set<std::string_view>;
  struct Folder {
    explicit Folder(std::pmr::memory_resource* memory) : names(memory) {}
    Names names;
    std::unordered_map<std::string, std::int64_t> lastNumbers;  // given out by name
  };
  Folder& listed(const FileUrl& folder);
  // False when it is taken.
  bool add(Names& names, std::string_view name);

  Sources m_sources;
  // The names live until the end: giving each its own memory would cost more than everything else here.
  std::pmr::monotonic_buffer_resource m_memory;
  std::unordered_map<FileUrl, Folder> m_folders;
};

}  // namespace orvane
