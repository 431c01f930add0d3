#pragma once

#include "core/map/records/MapKind.h"
#include "core/scanning/records/ScanCategory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct MapSum {
  std::int64_t diskBytes = 0;     // blocks; holes are free
  std::int64_t logicalBytes = 0;  // lengths
  std::int64_t files = 0;         // entries that are no folders

  // Stops at the largest number: lengths of sparse files are anybody's claim.
  MapSum& operator+=(const MapSum& other) noexcept;
  bool operator==(const MapSum&) const = default;
};

// The properties of a file that a filter of the map asks for.
struct MapTraits {
  MapKind kind = MapKind::other;
  MapAge age = MapAge::unknown;
  ScanCategory category = ScanCategory::manualReview;
  bool isReclaimable = false;  // a cleanup proposes it
  bool operator==(const MapTraits&) const = default;
};

struct MapFilter {
  std::optional<MapKind> kind = {};
  std::optional<MapAge> age = {};
  std::optional<ScanCategory> category = {};

  [[nodiscard]] bool isOff() const noexcept { return !kind && !age && !category; }
  [[nodiscard]] bool admits(const MapTraits& traits) const noexcept {
    return (!kind || *kind == traits.kind) && (!age || *age == traits.age) &&
           (!category || *category == traits.category);
  }
  bool operator==(const MapFilter&) const = default;
};

// A folder tree added up: every folder, and of the files in each the largest by name, the others by sums.
class StorageMap {
 public:
  using Index = std::uint32_t;
  static constexpr Index top = 0;
  static constexpr Index noFolder = UINT32_MAX;

  struct File {
    std::uint32_t nameStart = 0;
    MapTraits traits;
    std::int64_t diskBytes = 0;
    std::int64_t logicalBytes = 0;
  };
  // The files of one folder that are alike to every filter.
  struct Slice {
    MapTraits traits;
    MapSum sum;
  };
  struct Folder {
    Index parent = noFolder;
    MapState state = MapState::yours;
    std::string name;               // of the top its whole path
    std::int64_t ownDiskBytes = 0;  // of the folder's own entry
    std::int64_t ownLogicalBytes = 0;
    std::vector<Slice> slices;
    std::vector<File> files;            // the largest, in no order
    std::string fileNames;              // each ends with a NUL byte
    MapSum total;                       // of the whole tree below, the folder itself included
    std::int64_t reclaimableBytes = 0;  // on the disk, of the whole tree below

    void addFile(std::string_view fileName, const MapTraits& traits, const MapSum& sum, std::size_t filesKept);
    void addToSlice(const MapTraits& traits, const MapSum& sum);
    [[nodiscard]] std::string_view nameOf(const File& file) const noexcept { return fileNames.data() + file.nameStart; }
  };

  // A name of a file that has several; in one of their folders the file counts.
  struct LinkedName {
    Index folder = noFolder;
    std::string name;
    std::uint64_t inode = 0;
    MapSum sum;
  };

  // Every folder stands behind its parent, the first is the top; totals are still to be added up. Names of linked files
  // in the order of their folders and names.
  explicit StorageMap(std::deque<Folder> folders, std::vector<LinkedName> linkedNames = {});

  // The names in a folder of files that have several; empty where the map keeps none.
  [[nodiscard]] std::span<const LinkedName> linkedNames(Index folder) const;

  [[nodiscard]] std::size_t folderCount() const noexcept { return m_folders.size(); }
  [[nodiscard]] const Folder& folder(Index index) const { return m_folders[index]; }
  // The folders right inside, in no order.
  [[nodiscard]] std::span<const Index> children(Index index) const noexcept;
  [[nodiscard]] const std::string& rootPath() const { return m_folders.front().name; }
  [[nodiscard]] std::string pathOf(Index index) const;
  [[nodiscard]] std::optional<Index> find(std::string_view path) const;
  // Of each folder's whole tree, what the filter admits; folders themselves count only where it is off.
  [[nodiscard]] std::vector<MapSum> totals(const MapFilter& filter) const;
  struct Share {
    Index folder = noFolder;
    std::int64_t bytes = 0;  // on the disk
  };
  // The places that hold most of what a cleanup proposes, most first, and none of it twice: folders of which most is
  // that, and what lies right in others.
  [[nodiscard]] std::vector<Share> mostReclaimable(std::size_t count) const;
  // Of all files of a kind or a category.
  [[nodiscard]] std::int64_t diskBytesOf(MapKind kind) const noexcept;
  [[nodiscard]] std::int64_t diskBytesOf(ScanCategory category) const noexcept;
  // How many folders could not be read.
  [[nodiscard]] std::int64_t unreadableCount() const noexcept { return m_unreadable; }

 private:
  void addUp();
  void linkChildren();

  std::deque<Folder> m_folders;
  std::vector<LinkedName> m_linkedNames;
  std::vector<Index> m_childStart;  // by folder, and one more
  std::vector<Index> m_children;
  std::array<std::int64_t, allMapKinds.size()> m_kindBytes{};
  std::array<std::int64_t, allScanCategories.size()> m_categoryBytes{};
  std::int64_t m_unreadable = 0;
};

}  // namespace orvane
