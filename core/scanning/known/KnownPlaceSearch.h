#pragma once

#include "core/base/files/FileStatus.h"
#include "core/scanning/records/FileItem.h"
#include "core/scanning/records/KnownPlaceTable.h"

#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class FileStatusReader;
class PathValidator;

// Finds the known places that exist. Only these are opened, from their base on, and no link is followed; what is
// missing, unreadable or refused by the validator is skipped without a word.
class KnownPlaceSearch {
 public:
  // Both must outlive this object.
  KnownPlaceSearch(const PathValidator& validator, const FileStatusReader& statusReader);

  // An item a place, in the order of the rows, sized in full: hidden files count, a file with several names once. One
  // whose program runs is unselected, and so is one in a Trash. Those whose row and path `takes` refuses are not sized.
  // Empty once a stop is requested.
  template <typename Takes>
  [[nodiscard]] std::vector<FileItem> items(Takes takes, const std::stop_token& stop = {}) const {
    auto places = find(stop);
    std::erase_if(places, [&](const Found& place) { return !takes(*place.row, place.path); });
    return sized(places, stop);
  }

  // Whether the program of a place runs now, or any has a file open in it: by its canonical path, which the row fits.
  // Looks at the disk.
  [[nodiscard]] bool isInUse(std::string_view path, const KnownPlaceTable::Row& row) const;

 private:
  struct Found {
    std::string path;
    FileStatus status;
    const KnownPlaceTable::Row* row;
  };
  [[nodiscard]] std::vector<Found> find(const std::stop_token& stop) const;
  void addOtherTrashes(std::vector<Found>& places, const std::stop_token& stop) const;
  [[nodiscard]] static std::vector<Found> withoutNested(std::vector<Found> places);
  [[nodiscard]] std::vector<FileItem> sized(const std::vector<Found>& places, const std::stop_token& stop) const;

  const PathValidator& m_validator;
  const FileStatusReader& m_statusReader;
};

}  // namespace orvane
