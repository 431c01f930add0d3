#include "core/duplicates/FoundFiles.h"

#include <iterator>

namespace orvane {

FoundFile::FoundFile(const FileStatus& status, std::uint32_t nameStart) noexcept
    : m_device(status.device),
      m_inode(status.inode),
      m_size(status.size),
      m_modifiedSeconds(status.modified.seconds),
      m_modifiedNanoseconds(static_cast<std::uint32_t>(status.modified.nanoseconds)),
      m_nameStart(nameStart) {
  if (!status.created) return;
  m_createdSeconds = status.created->seconds;
  m_createdNanoseconds = static_cast<std::uint32_t>(status.created->nanoseconds);
}

std::optional<FileTime> FoundFile::created() const noexcept {
  if (m_createdNanoseconds == unknown) return std::nullopt;
  return FileTime{m_createdSeconds, m_createdNanoseconds};
}

void FoundFolder::pathInto(std::string& path) const {
  std::vector<const FoundFolder*> way;
  for (const auto* folder = this; folder != nullptr; folder = folder->parent) way.push_back(folder);
  path.clear();
  for (auto folder = way.rbegin(); folder != way.rend(); ++folder) {
    path.append((*folder)->name);
    if (!path.ends_with('/')) path.push_back('/');
  }
}

FoundFolder& FoundFiles::addFolder(const FoundFolder* parent, std::string name) {
  const std::lock_guard lock(m_mutex);
  auto& folder = m_folders.emplace_back();
  folder.parent = parent;
  folder.name = std::move(name);
  return folder;
}

void FoundFiles::settleOrder(const std::vector<FoundFolder*>& starts) {
  m_ordered.reserve(m_folders.size());
  std::vector<const FoundFolder*> waiting(starts.rbegin(), starts.rend());
  while (!waiting.empty()) {
    const auto* folder = waiting.back();
    waiting.pop_back();
    m_ordered.push_back(folder);
    waiting.insert(waiting.end(), folder->folders.rbegin(), folder->folders.rend());
  }
}

std::string_view FoundFiles::name(FoundFileIndex found) const {
  return m_ordered[found.folder]->fileNames.c_str() + file(found).nameStart();
}

const std::string& FoundPaths::of(FoundFileIndex found) {
  const auto* folder = m_files.folders()[found.folder];
  if (m_folder != folder) {
    folder->pathInto(m_path);
    m_folder = folder;
    m_prefix = m_path.size();
  }
  m_path.resize(m_prefix);
  return m_path.append(m_files.name(found));
}

}  // namespace orvane
