#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Sha256.h"
#include "core/duplicates/FoundFiles.h"
#include "core/duplicates/records/DuplicateGroup.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

class ContentFile;
class FileStatusReader;
class PathValidator;
class SearchMonitor;

// One search for duplicates: sizes, then beginnings, then whole contents, each stage looking only at what the one
// before left undecided. Several names of one inode are one file, known by the name that the walk met first.
class DuplicateSearch {
 public:
  DuplicateSearch(const PathValidator& validator, const FileStatusReader& statusReader, SearchMonitor& monitor)
      : m_validator(validator), m_statusReader(statusReader), m_monitor(monitor) {}

  // For one call. In no particular order; none once the monitor is stopped.
  [[nodiscard]] std::vector<DuplicateGroup> run(const std::vector<FileUrl>& folders, DuplicateKeepStrategy strategy);

 private:
  // A file that has the size of another one.
  struct Candidate {
    std::uint64_t device;
    std::uint64_t inode;
    std::uint64_t fingerprint = 0;  // of the beginning; equal for equal beginnings
    FoundFileIndex found;
    std::uint32_t bucket;      // the same for files of the same size
    std::uint32_t digest = 0;  // its place in m_digests
  };
  enum class Fate : std::uint8_t { undecided, dropped };
  struct EqualFiles {
    Sha256::Digest digest;
    std::vector<FoundFileIndex> found;
  };
  // A run of candidates whose contents have to be compared.
  struct Unit {
    std::size_t first;
    std::size_t count;
  };

  void chooseCandidates();
  void keepOneNameOfEach();
  void readBeginnings();
  struct BeginningReader;
  [[nodiscard]] Fate readBeginning(Candidate& candidate, BeginningReader& reader);
  // Whether its content was read and hashed with its beginning.
  [[nodiscard]] bool isWholeInBeginning(const Candidate& candidate) const;
  void sortByBeginning();
  void compareContents();
  void compareUnit(Unit unit);
  void hashUnit(Unit unit);
  void groupByDigest(Unit unit);
  // The candidate's file; absent when it is not the one that was found any more.
  [[nodiscard]] std::optional<ContentFile> openFile(const Candidate& candidate, FoundPaths& paths) const;
  [[nodiscard]] std::int64_t bytesOf(Unit unit) const;
  [[nodiscard]] DuplicateGroup groupOf(const EqualFiles& files, DuplicateKeepStrategy strategy) const;
  [[nodiscard]] FileItem itemOf(FoundFileIndex found) const;
  [[nodiscard]] std::int64_t sizeOf(const Candidate& candidate) const { return m_found.file(candidate.found).size(); }

  const PathValidator& m_validator;
  const FileStatusReader& m_statusReader;
  SearchMonitor& m_monitor;
  FoundFiles m_found;
  std::vector<Candidate> m_candidates;
  std::vector<Sha256::Digest> m_digests;
  std::mutex m_resultMutex;
  std::vector<EqualFiles> m_result;
};

}  // namespace orvane
