#pragma once

#include "core/base/files/FileUrl.h"
#include "core/duplicates/records/DuplicateGroup.h"
#include "core/duplicates/records/DuplicateKeepStrategy.h"
#include "core/duplicates/records/DuplicateProgress.h"

#include <functional>
#include <mutex>
#include <stop_token>
#include <vector>

namespace orvane {

class FileStatusReader;
class PathValidator;

// Finds sets of identical files. Only reads, and keeps nothing between calls; one search at a time.
class DuplicateFinderEngine {
 public:
  // Called from the calling thread, about ten times a second.
  using Progress = std::function<void(const DuplicateProgress&)>;

  DuplicateFinderEngine(const PathValidator& validator, const FileStatusReader& statusReader)
      : m_validator(validator), m_statusReader(statusReader) {}
  static DuplicateFinderEngine& shared();

  // The groups, most wasted bytes first, groups with equal ones in the order in which their first files were found. In
  // each group the strategy's choice is unselected and all others are selected. Several names of one file (hard links,
  // overlapping folders, bind mounts) are one file under the name found first. Leaves out without a word files that
  // cannot be read or that change during the search. Empty once `stop` is requested.
  [[nodiscard]] std::vector<DuplicateGroup> findDuplicates(const std::vector<FileUrl>& folders,
                                                           DuplicateKeepStrategy strategy, std::stop_token stop = {},
                                                           const Progress& progress = {});

 private:
  const PathValidator& m_validator;
  const FileStatusReader& m_statusReader;
  std::mutex m_mutex;
};

}  // namespace orvane
