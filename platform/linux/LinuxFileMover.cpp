#include "platform/linux/LinuxFileMover.h"

#include "core/base/files/PathText.h"
#include "core/base/values/Uuid.h"
#include "platform/linux/VolumeCopy.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace orvane {
namespace {
constexpr std::string_view partialPrefix = ".orvane-";
constexpr std::string_view partialSuffix = ".partial";

bool isCopyRemoved(int folder, const std::string& name) noexcept {
  removeCopy(folder, name);
  return !readFileStatus(folder, name.c_str()) && errno == ENOENT;
}

}  // namespace

LinuxMove::LinuxMove(const FileUrl& item, OpenItem open, const FileUrl& destination, const OpenFolder& folder)
    : m_item(std::move(open)), m_destinationFolder(folder.folder) {
  m_source = item;
  m_destination = destination;
  m_identity = m_item.identity();
  m_isLocked = m_item.isImmutable;
  if (folder.mount != m_item.mount) {
    const auto name = fmt::format("{}{}{}", partialPrefix, Uuid::random().toString(), partialSuffix);
    m_partial = destination.deletingLastPathComponent().appendingPathComponent(name);
  }
}

void LinuxMove::carryOut(FolderSyncSet& destinations, FolderSyncSet& sources) {
  destinations.add(m_destinationFolder, ::syncfs);
  const std::string name(m_destination.lastPathComponent());
  if (!m_partial) {
    sources.add(m_item.folder, ::syncfs);
    renameChecked(m_item, m_destinationFolder->get(), name);
    return;
  }
  const std::string partialName(m_partial->lastPathComponent());
  copyToVolume(m_item, m_destinationFolder->get(), partialName);
  renameWithoutReplacing(m_destinationFolder->get(), partialName, m_destinationFolder->get(), name);
}

bool LinuxMove::abandon() noexcept {
  return !m_partial || isCopyRemoved(m_destinationFolder->get(), std::string(m_partial->lastPathComponent()));
}

std::unique_ptr<HeldItem> LinuxFileMover::hold(const FileUrl& item, const std::string& boundary) {
  auto open = openItemIn(m_sources.open(parentPath(item.path()), boundary), item.lastPathComponent());
  return std::make_unique<LinuxHeldItem>(item, std::move(open));
}

std::unique_ptr<PendingMove> LinuxFileMover::planMove(std::unique_ptr<HeldItem> item, const FileUrl& destination) {
  const auto folder = parentPath(destination.path());
  return std::make_unique<LinuxMove>(item->place(), LinuxHeldItem::take(*item), destination,
                                     m_destinations.open(folder, folder));
}

bool LinuxFileMover::discardPartial(const FileUrl& partial) noexcept {
  const auto name = partial.lastPathComponent();
  if (!name.starts_with(partialPrefix) || !name.ends_with(partialSuffix)) return true;
  try {
    const auto folder = openFolder(parentPath(partial.path()), parentPath(partial.path()));
    return isCopyRemoved(folder->get(), std::string(name));
  } catch (const std::system_error& error) {
    return error.code() == std::errc::no_such_file_or_directory;
  } catch (const std::exception&) {
    return false;
  }
}

bool LinuxFileMover::undoLink(const FileUrl& source, const FileUrl& destination, std::uint64_t inode) noexcept {
  try {
    const auto first = openItem(source, parentPath(source.path()));
    const auto second = openItem(destination, parentPath(destination.path()));
    const bool isLink = first.status.device == second.status.device && first.status.inode == inode &&
                        second.status.inode == inode && second.status.type != FileType::directory;
    return !isLink || ::unlinkat(second.folder->get(), second.name.c_str(), 0) == 0;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace orvane
