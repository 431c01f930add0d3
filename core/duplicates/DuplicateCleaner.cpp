#include "core/duplicates/DuplicateCleaner.h"

#include "core/base/ByteCount.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/FileLock.h"
#include "core/base/PathAccess.h"
#include "core/base/PathText.h"
#include "core/duplicates/ContentFile.h"
#include "core/safety/TrashError.h"
#include "core/safety/TrashMover.h"
#include "core/safety/UndoJournal.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

constexpr auto lockInterval = std::chrono::milliseconds(20);
constexpr std::size_t blockSize = 128 * 1024;

// What is held open from the comparison until the copy has moved.
struct ComparedPair {
  std::optional<ContentFile> copy;
  std::optional<ContentFile> kept;
};

[[noreturn]] void leave(const std::string& reason) {
  throw std::runtime_error(reason);
}

// Absent when the cleanup is stopped before the lock is free. Throws std::system_error.
std::optional<FileLock> lockCleanups(const std::string& folder, std::stop_token stop) {
  const auto path = joinPath(folder, DuplicateCleaner::lockName);
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!file) throwErrno();
  std::mutex mutex;
  std::condition_variable_any never;
  std::unique_lock lock(mutex);
  while (!stop.stop_requested()) {
    if (auto held = FileLock::tryAcquire(file)) return held;
    never.wait_for(lock, stop, lockInterval, [] { return false; });
  }
  return std::nullopt;
}

// Compares one selected item with the copies that stay, right before it moves.
class CopyCheck {
 public:
  CopyCheck(const DuplicateGroup& group, const FileItem& item, const ItemIdentity& identity, const TrashMover& mover,
            std::shared_ptr<ComparedPair> pair, std::stop_token stop)
      : m_group(group),
        m_item(item),
        m_identity(identity),
        m_mover(mover),
        m_pair(std::move(pair)),
        m_stop(std::move(stop)) {}

  void operator()() const {
    m_pair->kept.reset();
    m_pair->copy = ContentFile::open(m_item.url().path());
    if (!m_pair->copy) leave(fmt::format("it cannot be read ({})", errorText(errno)));
    if (m_pair->copy->identity() != m_identity) leave("it changed since it was found");
    std::string reason = "no other copy of it is there any more";
    for (const auto& kept : m_group.items) {
      if (!kept.isSelected() && staysAs(kept, reason)) return;
    }
    leave(reason);
  }

 private:
  // Whether the item is a copy that stays; `reason` tells what keeps it from being one.
  bool staysAs(const FileItem& kept, std::string& reason) const {
    auto& copy = *m_pair->copy;
    m_pair->kept = ContentFile::open(kept.url().path());
    if (!m_pair->kept || m_mover.isInTrash(kept.url())) return false;
    auto& other = *m_pair->kept;
    const auto& identity = other.identity();
    const bool isOneFile = identity.device == m_identity.device && identity.inode == m_identity.inode;
    if (isOneFile || other.mayBeSameThroughOtherMount(copy)) {
      reason = "it seems to be the very file that is to be kept, seen in another place";
      return false;
    }
    if (identity.size != m_identity.size || !isEqual(copy, other)) {
      reason = "it is not the same as the copy to keep any more";
      return false;
    }
    const auto named = readPathStatus(kept.url().path());
    if (!copy.isUnchanged() || !other.isUnchanged() || !named || ItemIdentity::of(*named) != identity) {
      reason = "it or the copy to keep changed while they were compared";
      return false;
    }
    return true;
  }

  [[nodiscard]] bool isEqual(ContentFile& left, ContentFile& right) const {
    const auto buffer = std::make_unique_for_overwrite<std::byte[]>(2 * blockSize);
    left.expectWholeRead();
    right.expectWholeRead();
    for (std::int64_t offset = 0; offset < m_identity.size; offset += blockSize) {
      if (m_stop.stop_requested()) leave("the cleanup was stopped");
      const auto length = static_cast<std::size_t>(std::min<std::int64_t>(blockSize, m_identity.size - offset));
      if (left.isHole(offset, length) && right.isHole(offset, length)) continue;
      const std::span leftBlock(buffer.get(), length);
      const std::span rightBlock(buffer.get() + blockSize, length);
      if (left.read(offset, leftBlock) < length || right.read(offset, rightBlock) < length) return false;
      if (std::memcmp(leftBlock.data(), rightBlock.data(), length) != 0) return false;
    }
    return true;
  }

  const DuplicateGroup& m_group;
  const FileItem& m_item;
  ItemIdentity m_identity;
  const TrashMover& m_mover;
  std::shared_ptr<ComparedPair> m_pair;
  std::stop_token m_stop;
};

MoveOutcome outcomeOf(const FileItem& item, MoveResult result, const std::string& error = {}) {
  MoveOutcome outcome;
  outcome.source = item.url();
  outcome.result = result;
  outcome.fileSize = item.fileSize();
  if (!error.empty()) outcome.error = TrashError(TrashError::UnderlyingError{error}).what();
  return outcome;
}

// The requests of one cleanup, and the outcome of everything that is selected.
struct Plan {
  void add(const DuplicateGroup& group, const FileItem& item, const TrashMover& mover, const std::stop_token& stop) {
    const auto status = readPathStatus(item.url().path());
    if (!status) {
      const bool isGone = errno == ENOENT || errno == ENOTDIR;
      auto& outcome =
          outcomes.emplace_back(outcomeOf(item, isGone ? MoveResult::missing : MoveResult::failed, errorText(errno)));
      if (isGone) outcome.error = TrashError(TrashError::FileNotFound{item.url().path()}).what();
      return;
    }
    const bool isUnchanged = status->type == FileType::regular && status->size == group.fileSize &&
                             status->modified.date() == item.lastModifiedDate();
    if (!isUnchanged) {
      outcomes.push_back(outcomeOf(item, MoveResult::failed, "it changed since it was found"));
      return;
    }
    MoveRequest request;
    request.source = item.url();
    request.fileSize = group.fileSize;
    request.checksum = group.hash;
    request.expectedIdentity = ItemIdentity::of(*status);
    request.lastCheck = CopyCheck(group, item, *request.expectedIdentity, mover, pair, stop);
    requests.push_back(std::move(request));
    places.push_back(outcomes.size());
    outcomes.push_back(outcomeOf(item, MoveResult::cancelled));
  }

  std::vector<MoveRequest> requests;
  std::vector<std::size_t> places;  // of the requests' outcomes
  std::vector<MoveOutcome> outcomes;
  std::shared_ptr<ComparedPair> pair = std::make_shared<ComparedPair>();
};

// Every group with one copy that stays, whatever its caller made of it.
std::vector<DuplicateGroup> withOneKept(std::span<const DuplicateGroup> groups) {
  std::vector<DuplicateGroup> result;
  for (const auto& group : groups) {
    const auto isSelected = [](const FileItem& item) { return item.isSelected(); };
    if (std::none_of(group.items.begin(), group.items.end(), isSelected)) continue;
    result.push_back(group);
    result.back().enforceKeepOneInvariant();
  }
  return result;
}

}  // namespace

std::string DuplicateCleanup::closingText() const {
  return fmt::format("Cleaned {} duplicate files, freeing {}.", filesMoved, formatByteCount(bytesFreed));
}

std::string DuplicateCleanup::failureLine(const MoveOutcome& outcome) {
  return fmt::format("Failed to trash duplicate {}: {}", outcome.source.path(), outcome.error);
}

DuplicateCleanup DuplicateCleaner::clean(std::span<const DuplicateGroup> groups, const Boundary& roots,
                                         const CleanupRun::Progress& progress, std::stop_token stop) {
  const auto kept = withOneKept(groups);
  DuplicateCleanup result;
  Plan plan;
  std::optional<FileLock> lock;
  std::string failure;
  try {
    lock = lockCleanups(m_journal.storageFolder(), stop);
  } catch (const std::system_error& error) {
    failure =
        fmt::format("Orvane's folder '{}' cannot be written ({})", m_journal.storageFolder(), error.code().message());
  }
  for (const auto& group : kept) {
    for (const auto& item : group.items) {
      if (!item.isSelected()) continue;
      if (lock) {
        plan.add(group, item, m_mover, stop);
      } else {
        plan.outcomes.push_back(outcomeOf(item, failure.empty() ? MoveResult::cancelled : MoveResult::failed, failure));
      }
    }
  }
  if (!plan.requests.empty()) {
    CleanupRun run(m_mover, m_journal, roots);
    result.runId = run.id();
    auto outcomes = run.carryOut(plan.requests, progress, std::move(stop));
    for (std::size_t i = 0; i < outcomes.size(); ++i) plan.outcomes[plan.places[i]] = std::move(outcomes[i]);
  }
  result.outcomes = std::move(plan.outcomes);
  for (const auto& outcome : result.outcomes) {
    if (outcome.result != MoveResult::moved) continue;
    ++result.filesMoved;
    result.bytesFreed = checkedAdd(result.bytesFreed, outcome.fileSize);
  }
  return result;
}

}  // namespace orvane
