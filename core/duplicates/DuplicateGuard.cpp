#include "core/duplicates/DuplicateGuard.h"

#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/duplicates/ContentFile.h"
#include "core/safety/run/TrashMover.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>

namespace orvane {
namespace {

constexpr auto lockInterval = std::chrono::milliseconds(20);
constexpr std::size_t comparedBlockSize = 128 * 1024;

[[noreturn]] void leave(const std::string& reason) {
  throw std::runtime_error(reason);
}

}  // namespace

// The descriptors held open from the comparison until the copy has moved.
struct DuplicateGuard::ComparedPair {
  std::optional<ContentFile> copy;
  std::optional<ContentFile> kept;
};

// Compares one copy with those that stay, right before it moves.
class DuplicateGuard::CopyCheck {
 public:
  CopyCheck(const DuplicateGuard& guard, const FileItem& copy, std::shared_ptr<const Staying> staying)
      : m_guard(guard), m_copy(copy), m_staying(std::move(staying)) {}

  void operator()() const {
    pair().kept.reset();
    pair().copy = ContentFile::open(m_copy.url().path());
    if (!pair().copy) leave(fmt::format("it cannot be read ({})", errorText(errno)));
    if (pair().copy->identity() != m_copy.identity()) leave("it changed since it was found");
    std::string reason = "no other copy of it is there any more";
    for (const auto& kept : *m_staying) {
      if (staysAs(kept, reason)) return;
    }
    leave(reason);
  }

 private:
  [[nodiscard]] ComparedPair& pair() const { return *m_guard.m_pair; }

  // Whether a copy stays there; `reason` tells what keeps it from being one.
  bool staysAs(const FileUrl& kept, std::string& reason) const {
    auto& copy = *pair().copy;
    pair().kept = ContentFile::open(kept.path());
    if (!pair().kept || m_guard.m_mover.isInTrash(kept)) return false;
    auto& other = *pair().kept;
    const auto& identity = other.identity();
    const bool isOneFile = identity.device == copy.identity().device && identity.inode == copy.identity().inode;
    if (isOneFile || other.mayBeSameThroughOtherMount(copy)) {
      reason = "it seems to be the very file that is to be kept, seen in another place";
      return false;
    }
    if (identity.size != copy.identity().size || !isEqual(copy, other)) {
      reason = "it is not the same as the copy to keep any more";
      return false;
    }
    const auto named = readPathStatus(kept.path());
    if (!copy.isUnchanged() || !other.isUnchanged() || !named || ItemIdentity::of(*named) != identity) {
      reason = "it or the copy to keep changed while they were compared";
      return false;
    }
    return true;
  }

  // Both are of one size.
  [[nodiscard]] bool isEqual(ContentFile& left, ContentFile& right) const {
    const auto size = left.identity().size;
    const auto buffer = std::make_unique_for_overwrite<std::byte[]>(2 * comparedBlockSize);
    left.expectWholeRead();
    right.expectWholeRead();
    for (std::int64_t offset = 0; offset < size; offset += comparedBlockSize) {
      if (m_guard.m_stop.stop_requested()) leave("the cleanup was stopped");
      const auto length = static_cast<std::size_t>(std::min<std::int64_t>(comparedBlockSize, size - offset));
      if (left.isHole(offset, length) && right.isHole(offset, length)) continue;
      const std::span leftBlock(buffer.get(), length);
      const std::span rightBlock(buffer.get() + comparedBlockSize, length);
      if (left.read(offset, leftBlock) < length || right.read(offset, rightBlock) < length) return false;
      if (std::memcmp(leftBlock.data(), rightBlock.data(), length) != 0) return false;
    }
    return true;
  }

  const DuplicateGuard& m_guard;
  const FileItem& m_copy;
  std::shared_ptr<const Staying> m_staying;
};

std::optional<FileLock> DuplicateGuard::takeTurn(const std::string& journalFolder, std::stop_token stop) {
  const auto path = joinPath(journalFolder, lockName);
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!file) throwErrno();
  std::mutex mutex;
  std::condition_variable_any never;
  std::unique_lock waiting(mutex);
  while (!stop.stop_requested()) {
    if (auto held = FileLock::tryAcquire(file)) return held;
    never.wait_for(waiting, stop, lockInterval, [] { return false; });
  }
  return std::nullopt;
}

DuplicateGuard::DuplicateGuard(FileLock turn, const TrashMover& mover, std::stop_token stop)
    : m_turn(std::move(turn)), m_mover(mover), m_stop(std::move(stop)), m_pair(std::make_unique<ComparedPair>()) {}

DuplicateGuard::~DuplicateGuard() = default;

std::function<void()> DuplicateGuard::check(const FileItem& copy, std::shared_ptr<const Staying> staying) const {
  return CopyCheck(*this, copy, std::move(staying));
}

}  // namespace orvane
