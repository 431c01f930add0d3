#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/scanning/walk/FolderSize.h"
#include "core/scanning/walk/TreeWalk.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace orvane {

// How a walk goes on at a folder.
struct Descent {
  enum class Kind : std::uint8_t { skip, descend, whole };
  Kind kind = Kind::skip;
  std::shared_ptr<FolderSize> size = nullptr;  // adds up a whole folder
};

// The task that visits one folder of a walk: opens it, reads its entries and their types, and makes the tasks for the
// folders below. A walk derives its `Visit` from this, so that no entry costs a virtual call, and defines
//   Visit(Visit& parent, std::string_view name, UnreadFolder unread): the visit of a subfolder;
//   std::optional<Rules> enter(): what the folder's path decides for its entries; absent where the folder stays unread;
//   void file(Rules&, entry, status): an entry that is no folder. The status is there where it was asked for, or where
//     the file system told no type, and the entry is of the type that was told;
//   Descent folder(Rules&, name): how the walk goes on there;
// and, where it needs another than this one, any of the functions from takes() to finish().
template <typename Visit>
class FolderVisit : public WorkStack::Task {
 public:
  using Entry = DirectoryReader::Entry;

  FolderVisit(TreeWalk& walk, UnreadFolder unread) : m_walk(walk), m_unread(std::move(unread)) {}

  void run(WorkStack& /*stack*/) noexcept final {
    if (auto rules = visit().enter()) {
      if (auto reader = m_unread.open()) read(*reader, *rules);
    }
    visit().finish();
    m_walk.work.push(m_tasks, *this, WorkStack::Maker::ends);
  }

  // The length in bytes from which on the folders below stay unread.
  [[nodiscard]] static constexpr std::size_t maxPathBytes() noexcept { return maxWalkedPathBytes; }
  // Whether the entry is looked at; hidden ones are not.
  bool takes(std::string_view name) noexcept { return !name.starts_with('.'); }
  // Whether file() needs the status of a file or link.
  template <typename Rules>
  [[nodiscard]] bool needsStatus(const Rules& /*rules*/, const Entry& entry) const noexcept {
    return entry.type == FileType::regular;
  }
  [[nodiscard]] std::optional<FileStatus> readStatus(const char* name) const noexcept {
    return readFileStatus(m_descriptor, name);
  }
  // All entries have been read, and the folder is still open.
  template <typename Rules>
  void leave(Rules& /*rules*/) {}
  // The folder is closed, or stayed unread; the tasks that it made begin afterwards.
  void finish() {}

 protected:
  // Where the folder is; reached by its parent until it is open, by its path afterwards.
  [[nodiscard]] const UnreadFolder& unread() const noexcept { return m_unread; }
  [[nodiscard]] const std::string& canonicalPath() const noexcept { return m_unread.canonicalPath; }
  // While the folder is open.
  [[nodiscard]] int descriptor() const noexcept { return m_descriptor; }
  [[nodiscard]] const std::shared_ptr<const HeldFolder>& hold() {
    if (!std::exchange(m_hasTriedToHold, true)) m_self = m_walk.held.hold(m_descriptor);
    return m_self;
  }
  // Makes the task for the folder `name` of this one.
  void follow(std::string_view name, Descent descent) {
    if (descent.kind == Descent::Kind::skip) return;
    const bool isAddedUp = descent.kind == Descent::Kind::whole;
    if (!isAddedUp && m_unread.canonicalPath.size() + name.size() >= Visit::maxPathBytes()) return;
    UnreadFolder unread{hold(), joinPath(m_unread.canonicalPath, name)};
    if (isAddedUp) {
      m_tasks.push_back(FolderSize::task(std::move(descent.size), std::move(unread), m_walk));
    } else {
      m_tasks.push_back(std::make_unique<Visit>(visit(), name, std::move(unread)));
    }
  }

  TreeWalk& m_walk;
  WorkStack::Tasks m_tasks;

 private:
  [[nodiscard]] Visit& visit() noexcept { return static_cast<Visit&>(*this); }

  template <typename Rules>
  void read(DirectoryReader& reader, Rules& rules) {
    m_descriptor = reader.descriptor();
    while (!m_walk.isStopped()) {
      const auto entry = reader.next();
      if (!entry) break;
      if (visit().takes(entry->name)) examine(*entry, rules);
    }
    visit().leave(rules);
  }

  template <typename Rules>
  void examine(const Entry& entry, Rules& rules) {
    auto type = entry.type;
    std::optional<FileStatus> status;
    const bool isFileOrLink = type == FileType::regular || type == FileType::symbolicLink;
    if (type == FileType::unknown || (isFileOrLink && visit().needsStatus(rules, entry))) {
      status = visit().readStatus(entry.nameBytes());
      if (type == FileType::unknown && status) type = status->type;
      if (status && status->type != type) status.reset();
    }
    if (type == FileType::directory) return follow(entry.name, visit().folder(rules, entry.name));
    visit().file(rules, entry, status);
  }

  UnreadFolder m_unread;
  int m_descriptor = -1;
  std::shared_ptr<const HeldFolder> m_self;
  bool m_hasTriedToHold = false;
};

}  // namespace orvane
