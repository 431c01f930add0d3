#include "core/duplicates/DuplicateSearch.h"

#include "core/base/values/CheckedArithmetic.h"
#include "core/duplicates/ContentComparison.h"
#include "core/duplicates/ContentFile.h"
#include "core/duplicates/DuplicateWalk.h"
#include "core/duplicates/HashUtility.h"
#include "core/duplicates/SearchMonitor.h"
#include "core/scanning/walk/WorkStack.h"

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <span>
#include <tuple>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t filesPerTurn = 64;

// A file of at most this many bytes is read once and hashed at once: its beginning is its content.
constexpr auto beginningSize = static_cast<std::size_t>(HashUtility::partialSize);

// Tells beginnings apart; what it takes for equal is compared byte by byte, so that it need only be fast.
std::uint64_t fingerprintOf(std::span<const std::byte> bytes) noexcept {
  constexpr std::uint64_t factor = 0x9E3779B97F4A7C15ULL;
  std::array<std::uint64_t, 4> lanes{1, 2, 3, 4};
  std::array<std::uint64_t, 4> words{};
  for (std::size_t at = 0; at < bytes.size(); at += sizeof words) {
    words = {};
    std::memcpy(words.data(), bytes.data() + at, std::min(sizeof words, bytes.size() - at));
    for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
      lanes[lane] = (lanes[lane] ^ words[lane]) * factor;
      lanes[lane] ^= lanes[lane] >> 29U;
    }
  }
  std::uint64_t result = 0;
  for (const auto lane : lanes) result = (result ^ lane) * factor;
  return result ^ (result >> 32U);
}

// Most files that one thread compares side by side: each of them takes a descriptor.
std::size_t maxSideBySide() noexcept {
  constexpr rlim_t keptForOthers = 64;
  constexpr rlim_t maxOpen = 128;
  struct rlimit limit {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur <= keptForOthers) return 2;
  const auto share = (limit.rlim_cur - keptForOthers) / WorkStack::processorCount();
  return static_cast<std::size_t>(std::clamp<rlim_t>(share, 2, maxOpen));
}

// Calls `visit` for each run of elements of which each is `isSame` as the one before.
template <typename Elements, typename IsSame, typename Visit>
void forEachRun(const Elements& elements, IsSame isSame, Visit visit) {
  for (std::size_t first = 0; first < elements.size();) {
    std::size_t end = first + 1;
    while (end < elements.size() && isSame(elements[end - 1], elements[end])) ++end;
    visit(first, end - first);
    first = end;
  }
}

}  // namespace

struct DuplicateSearch::BeginningReader {
  explicit BeginningReader(const FoundFiles& found) : paths(found) {}
  FoundPaths paths;
  Sha256 hash;
  std::array<std::byte, beginningSize + 1> buffer;
};

std::vector<DuplicateGroup> DuplicateSearch::run(const std::vector<FileUrl>& folders, DuplicateKeepStrategy strategy) {
  listCandidates(m_found, folders, m_validator, m_statusReader, m_monitor);
  if (m_monitor.isStopped()) return {};
  chooseCandidates();
  keepOneNameOfEach();
  readBeginnings();
  if (m_monitor.isStopped()) return {};
  sortByBeginning();
  compareContents();
  if (m_monitor.isStopped()) return {};
  // Makes room for the groups.
  std::exchange(m_candidates, {});
  std::exchange(m_digests, {});

  for (auto& files : m_result) std::sort(files.found.begin(), files.found.end());
  std::sort(m_result.begin(), m_result.end(),
            [](const auto& left, const auto& right) { return left.found.front() < right.found.front(); });
  std::vector<DuplicateGroup> groups;
  groups.reserve(m_result.size());
  for (auto& files : m_result) {
    groups.push_back(groupOf(files, strategy));
    files.found = {};
  }
  return groups;
}

void DuplicateSearch::chooseCandidates() {
  struct Sized {
    std::int64_t size;
    FoundFileIndex found;
  };
  std::vector<Sized> all;
  const auto& folders = m_found.folders();
  std::size_t count = 0;
  for (const auto* folder : folders) count += folder->files.size();
  all.reserve(count);
  for (std::size_t i = 0; i < folders.size(); ++i) {
    const auto& files = folders[i]->files;
    for (std::size_t j = 0; j < files.size(); ++j) {
      all.push_back({files[j].size(), {static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(j)}});
    }
  }
  std::sort(all.begin(), all.end(), [](const Sized& left, const Sized& right) { return left.size < right.size; });

  const auto isSame = [](const Sized& left, const Sized& right) { return left.size == right.size; };
  std::size_t wanted = 0;
  forEachRun(all, isSame, [&](std::size_t, std::size_t length) { wanted += length > 1 ? length : 0; });
  m_candidates.reserve(wanted);
  std::uint32_t bucket = 0;
  forEachRun(all, isSame, [&](std::size_t first, std::size_t length) {
    if (length < 2) return;
    for (std::size_t i = first; i < first + length; ++i) {
      const auto& file = m_found.file(all[i].found);
      m_candidates.push_back({file.device(), file.inode(), 0, all[i].found, bucket});
    }
    ++bucket;
  });
}

// Leaves the candidates in the order in which a disk holds them.
void DuplicateSearch::keepOneNameOfEach() {
  const auto identity = [](const Candidate& candidate) { return std::pair(candidate.device, candidate.inode); };
  std::sort(m_candidates.begin(), m_candidates.end(), [&](const Candidate& left, const Candidate& right) {
    return std::tuple(left.device, left.inode, left.found) < std::tuple(right.device, right.inode, right.found);
  });
  const auto isSameFile = [&](const Candidate& left, const Candidate& right) {
    return identity(left) == identity(right);
  };
  m_candidates.erase(std::unique(m_candidates.begin(), m_candidates.end(), isSameFile), m_candidates.end());

  std::vector<std::uint32_t> filesIn;
  for (const auto& candidate : m_candidates) {
    if (candidate.bucket >= filesIn.size()) filesIn.resize(candidate.bucket + 1);
    ++filesIn[candidate.bucket];
  }
  std::erase_if(m_candidates, [&](const Candidate& candidate) { return filesIn[candidate.bucket] < 2; });
}

std::optional<ContentFile> DuplicateSearch::openFile(const Candidate& candidate, FoundPaths& paths) const {
  auto file = ContentFile::open(paths.of(candidate.found));
  if (!file) return std::nullopt;
  const auto& identity = file->identity();
  const bool isSame =
      identity.device == candidate.device && identity.inode == candidate.inode && identity.size == sizeOf(candidate);
  return isSame ? std::move(file) : std::nullopt;
}

void DuplicateSearch::readBeginnings() {
  std::int64_t bytes = 0;
  for (const auto& candidate : m_candidates) {
    bytes = checkedAdd(bytes, std::min(sizeOf(candidate), HashUtility::partialSize));
  }
  m_monitor.beginStage(DuplicateProgress::Stage::comparingBeginnings, static_cast<std::int64_t>(m_candidates.size()),
                       bytes);
  m_digests.resize(m_candidates.size());
  for (std::size_t i = 0; i < m_candidates.size(); ++i) m_candidates[i].digest = static_cast<std::uint32_t>(i);
  std::vector<Fate> fates(m_candidates.size(), Fate::dropped);
  m_monitor.forRanges(m_candidates.size(), filesPerTurn, [&](std::size_t first, std::size_t end) {
    BeginningReader reader(m_found);
    for (std::size_t i = first; i < end && !m_monitor.isStopped(); ++i) {
      fates[i] = readBeginning(m_candidates[i], reader);
      m_monitor.settle(1, std::min(sizeOf(m_candidates[i]), HashUtility::partialSize));
    }
  });
  std::erase_if(m_candidates, [&](const Candidate& candidate) { return fates[candidate.digest] == Fate::dropped; });
}

DuplicateSearch::Fate DuplicateSearch::readBeginning(Candidate& candidate, BeginningReader& reader) {
  if (!isWholeInBeginning(candidate)) {
    auto file = openFile(candidate, reader.paths);
    const auto bytes = std::span(reader.buffer).first(beginningSize);
    if (!file || file->read(0, bytes) < bytes.size()) return Fate::dropped;
    candidate.fingerprint = fingerprintOf(bytes);
    return Fate::undecided;
  }
  // Another file may have taken the name by now; it is grouped by its own content, and a cleanup reads all of it again.
  const auto size = static_cast<std::size_t>(sizeOf(candidate));
  const auto& path = reader.paths.of(candidate.found);
  if (ContentFile::readAtOnce(path, std::span(reader.buffer).first(size + 1)) != size) return Fate::dropped;
  reader.hash.update(std::span(reader.buffer).first(size));
  auto& digest = m_digests[candidate.digest];
  digest = reader.hash.finish();
  std::memcpy(&candidate.fingerprint, digest.data(), sizeof candidate.fingerprint);
  return Fate::undecided;
}

bool DuplicateSearch::isWholeInBeginning(const Candidate& candidate) const {
  return sizeOf(candidate) <= HashUtility::partialSize;
}

void DuplicateSearch::sortByBeginning() {
  std::sort(m_candidates.begin(), m_candidates.end(), [](const Candidate& left, const Candidate& right) {
    return std::tie(left.bucket, left.fingerprint, left.found) < std::tie(right.bucket, right.fingerprint, right.found);
  });
}

void DuplicateSearch::compareContents() {
  std::vector<Unit> units;
  const auto isSame = [](const Candidate& left, const Candidate& right) {
    return left.bucket == right.bucket && left.fingerprint == right.fingerprint;
  };
  std::int64_t files = 0;
  std::int64_t bytes = 0;
  forEachRun(m_candidates, isSame, [&](std::size_t first, std::size_t count) {
    if (count < 2) return;
    const Unit unit{first, count};
    if (isWholeInBeginning(m_candidates[first])) return groupByDigest(unit);
    units.push_back(unit);
    files += static_cast<std::int64_t>(count);
    bytes = checkedAdd(bytes, bytesOf(unit));
  });
  m_monitor.beginStage(DuplicateProgress::Stage::comparingContents, files, bytes);

  const auto sideBySide = maxSideBySide();
  const auto small = std::partition(units.begin(), units.end(), [&](Unit unit) { return unit.count > sideBySide; });
  std::for_each(units.begin(), small, [&](Unit unit) { hashUnit(unit); });
  units.erase(units.begin(), small);
  // The longest work goes first, so that no thread is left alone with it; the rest in the order of the disk.
  const auto isLong = [&](Unit unit) { return bytesOf(unit) > bytes / 16; };
  const auto start = [&](Unit unit) {
    return std::pair(m_candidates[unit.first].device, m_candidates[unit.first].inode);
  };
  const auto rest = std::partition(units.begin(), units.end(), isLong);
  std::sort(units.begin(), rest, [&](Unit left, Unit right) { return bytesOf(left) > bytesOf(right); });
  std::sort(rest, units.end(), [&](Unit left, Unit right) { return start(left) < start(right); });
  m_monitor.forRanges(units.size(), 1, [&](std::size_t i, std::size_t) { compareUnit(units[i]); });
}

std::int64_t DuplicateSearch::bytesOf(Unit unit) const {
  return checkedMultiply(sizeOf(m_candidates[unit.first]), static_cast<std::int64_t>(unit.count));
}

void DuplicateSearch::compareUnit(Unit unit) {
  std::vector<ContentComparison::Member> members;
  FoundPaths paths(m_found);
  for (std::size_t i = unit.first; i < unit.first + unit.count; ++i) {
    if (auto file = openFile(m_candidates[i], paths)) {
      members.push_back({static_cast<std::uint32_t>(i), *std::move(file)});
    }
  }
  std::int64_t settled = 0;
  if (members.size() > 1) {
    ContentComparison comparison(std::move(members), sizeOf(m_candidates[unit.first]), m_monitor);
    for (const auto& equal : comparison.run()) {
      EqualFiles files{equal.digest, {}};
      for (const auto index : equal.indexes) files.found.push_back(m_candidates[index].found);
      const std::lock_guard lock(m_resultMutex);
      m_result.push_back(std::move(files));
    }
    settled = comparison.settledBytes();
  }
  m_monitor.settle(static_cast<std::int64_t>(unit.count), bytesOf(unit) - settled);
}

// For more files than can be open side by side.
void DuplicateSearch::hashUnit(Unit unit) {
  const auto all = std::span(m_candidates).subspan(unit.first, unit.count);
  std::vector<Fate> fates(unit.count, Fate::dropped);
  m_monitor.forRanges(unit.count, 1, [&](std::size_t i, std::size_t) {
    FoundPaths paths(m_found);
    auto file = openFile(all[i], paths);
    const auto digest = file ? ContentComparison::digestOf(*file, sizeOf(all[i]), m_monitor) : std::nullopt;
    m_monitor.settle(1, 0);
    if (!digest) return;
    m_digests[all[i].digest] = *digest;
    fates[i] = Fate::undecided;
  });
  std::size_t kept = 0;
  for (std::size_t i = 0; i < unit.count; ++i) {
    if (fates[i] == Fate::undecided) all[kept++] = all[i];
  }
  groupByDigest({unit.first, kept});
}

void DuplicateSearch::groupByDigest(Unit unit) {
  const auto all = std::span(m_candidates).subspan(unit.first, unit.count);
  const auto digestOf = [&](const Candidate& candidate) -> const Sha256::Digest& {
    return m_digests[candidate.digest];
  };
  std::sort(all.begin(), all.end(), [&](const Candidate& left, const Candidate& right) {
    return std::tie(digestOf(left), left.found) < std::tie(digestOf(right), right.found);
  });
  forEachRun(
      all, [&](const auto& left, const auto& right) { return digestOf(left) == digestOf(right); },
      [&](std::size_t first, std::size_t count) {
        if (count < 2) return;
        auto& files = m_result.emplace_back(EqualFiles{digestOf(all[first]), {}});
        files.found.reserve(count);
        for (std::size_t i = first; i < first + count; ++i) files.found.push_back(all[i].found);
      });
}

FileItem DuplicateSearch::itemOf(FoundFileIndex found) const {
  const auto& file = m_found.file(found);
  std::string path = FoundPaths(m_found).of(found);
  FileItem::Fields fields;
  fields.relativeStart = static_cast<std::uint32_t>(path.size() - m_found.name(found).size());
  fields.url = FileUrl(std::move(path));
  fields.fileSize = file.size();
  const auto created = file.created();
  fields.createdDate = created ? created->date() : ReferenceClock::now();
  fields.identity = {file.device(), file.inode(), file.size(), file.modified(), FileType::regular};
  fields.category = ScanCategory::duplicates;
  fields.riskLabel = RiskLabel::review;
  fields.isSelected = false;
  return FileItem(std::move(fields));
}

DuplicateGroup DuplicateSearch::groupOf(const EqualFiles& files, DuplicateKeepStrategy strategy) const {
  DuplicateGroup group;
  group.fileSize = m_found.file(files.found.front()).size();
  group.hash = digestText(files.digest);
  group.items.reserve(files.found.size());
  for (const auto found : files.found) group.items.push_back(itemOf(found));
  group.applyKeepStrategy(strategy);
  group.enforceKeepOneInvariant();
  return group;
}

}  // namespace orvane
