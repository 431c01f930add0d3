#include "core/scanning/scan/FolderScan.h"

#include "core/base/files/PathText.h"
#include "core/organizer/records/CloudFolderDetector.h"
#include "core/platform/FileStatusReader.h"
#include "core/scanning/walk/BlackHoleNames.h"
#include "core/scanning/walk/BundleNames.h"
#include "core/scanning/walk/WholeFolders.h"

#include <utility>

namespace orvane {
namespace {

// A chunk is handed on as soon as it is full, so that a huge folder neither fills the memory nor delays its findings.
constexpr std::size_t entriesPerChunk = 1024;

std::string withSlash(std::string path) {
  if (!path.ends_with('/')) path.push_back('/');
  return path;
}

std::string joined(std::string_view prefix, std::string_view name) {
  std::string path;
  path.reserve(prefix.size() + name.size());
  path.append(prefix).append(name);
  return path;
}

std::string_view withoutSlash(std::string_view prefix) noexcept {
  return prefix.size() > 1 ? prefix.substr(0, prefix.size() - 1) : prefix;
}

}  // namespace

FolderScan::Rules::Rules(const FolderScan& scan, std::string_view prefix)
    : allowed(scan.m_context.validator, withoutSlash(prefix), scan.m_place.canonicalPath, scan.m_context.boundary),
      classifier(prefix),
      risk(prefix),
      relative(scan.m_root, prefix),
      isCachesFolder(lastComponent(prefix) == applicationCachesName) {}

FolderScan::FolderScan(ScanContext& context, FolderListing& listing, std::string_view root, std::string path,
                       FolderPlace place)
    : m_context(context),
      m_listing(listing),
      m_root(root),
      m_prefix(withSlash(std::move(path))),
      m_place(std::move(place)) {}

void FolderScan::run(WorkStack& stack) {
  const Rules rules(*this, m_prefix);
  auto reader = rules.allowed.refusesAllBelow() ? std::nullopt : m_place.open();
  while (reader && !m_context.isStopped) {
    const bool isMore = readEntries(*reader);
    examineEntries(*reader, rules);
    if (!isMore) break;
    publish(ListingBoard::Part::more, stack);
  }
  reader.reset();
  publish(ListingBoard::Part::last, stack);
}

void FolderScan::publish(ListingBoard::Part part, WorkStack& stack) {
  m_context.board.publish(m_listing, part, std::exchange(m_chunk, {}), std::exchange(m_subfolders, {}));
  stack.push(m_tasks);
}

bool FolderScan::readEntries(DirectoryReader& reader) {
  m_entries.clear();
  m_names.clear();
  while (m_entries.size() < entriesPerChunk) {
    const auto entry = reader.next();
    if (!entry) return false;
    if (entry->name.starts_with('.')) continue;
    m_entries.push_back({m_names.size(), entry->type});
    m_names.append(entry->name).push_back('\0');
  }
  return true;
}

void FolderScan::examineEntries(const DirectoryReader& reader, const Rules& rules) {
  const auto isFolder = [](const Entry& entry) { return entry.type == FileType::directory; };
  const auto folders = static_cast<std::size_t>(std::count_if(m_entries.begin(), m_entries.end(), isFolder));
  m_chunk.events.reserve(m_entries.size() - folders);
  for (const auto& entry : m_entries) {
    if (m_context.isStopped.load(std::memory_order_relaxed)) return;
    examine(m_names.c_str() + entry.nameStart, entry.type, reader, rules);
    ++m_chunk.examined;
  }
}

void FolderScan::examine(const char* name, FileType type, const DirectoryReader& reader, const Rules& rules) {
  if (type == FileType::directory) return examineFolder(name, reader, rules);
  if (type == FileType::other) return note(name);
  if (type == FileType::regular && !rules.allowed.admits(name)) return note(name);
  const auto status = m_context.statusReader.read(reader.descriptor(), name);
  if (!status || (type != FileType::unknown && status->type != type)) return note(name);
  switch (status->type) {
    case FileType::directory:
      return examineFolder(name, reader, rules);
    case FileType::regular:
      if (type == FileType::unknown && !rules.allowed.admits(name)) break;
      return addFile(name, *status, rules);
    case FileType::symbolicLink:
      // Only here does an entry's own path have to be resolved.
      if (!m_context.validator.isPathAllowed(FileUrl(joined(m_prefix, name)), m_context.boundary)) break;
      return addFile(name, *status, rules);
    case FileType::other:
    case FileType::unknown:
      break;
  }
  note(name);
}

void FolderScan::examineFolder(std::string_view name, const DirectoryReader& reader, const Rules& rules) {
  // A folder that is refused is no finding, but what it holds may be.
  if (rules.allowed.admits(name)) {
    if (isBlackHoleName(name)) return note(name);
    const std::string path = joined(m_prefix, name);
    if (rules.isCachesFolder && path.find(applicationCachesFragment) != std::string::npos) {
      return addWholeFolder(name, reader, rules);
    }
    if (isBelowDeveloperCaches(path)) {
      if (m_context.developerCaches == DeveloperCaches::leaveOut) return note(name);
      return addWholeFolder(name, reader, rules);
    }
  }
  note(name);
  if (!isBundleName(name)) addSubfolder(name, reader);
}

FileItem::Fields FolderScan::fieldsOf(std::string_view name, const FileStatus& status, const Rules& rules) const {
  FileItem::Fields fields;
  fields.url = FileUrl(joined(m_prefix, name));
  fields.relativeStart = rules.relative.start(name);
  if (!fields.relativeStart) fields.relativePath = relativePath(fields.url.path(), m_root);
  fields.fileSize = status.size;
  fields.createdDate = status.created ? status.created->date() : ReferenceClock::now();
  fields.identity = ItemIdentity::of(status);
  fields.lastOpenedDate = status.accessed.date();
  return fields;
}

void FolderScan::addFile(std::string_view name, const FileStatus& status, const Rules& rules) {
  auto fields = fieldsOf(name, status, rules);
  fields.category = rules.classifier.classify(name, status.size);
  fields.riskLabel = rules.risk.evaluate(fields.category, name, fields.createdDate);
  fields.isCloudPlaceholder = CloudFolderDetector::isPlaceholderName(name);
  m_chunk.events.emplace_back(std::in_place_type<FileItem>, std::move(fields));
}

void FolderScan::addWholeFolder(std::string_view name, const DirectoryReader& reader, const Rules& rules) {
  const auto status = m_context.statusReader.read(reader.descriptor(), std::string(name).c_str());
  if (!status || status->type != FileType::directory) return note(name);
  const auto size = std::make_shared<FolderSize>([&board = m_context.board] { board.sizeCompleted(); });
  m_chunk.wholeFolders.push_back({m_chunk.events.size(), fieldsOf(name, *status, rules), size});
  m_chunk.events.emplace_back(ScanProgress{});
  m_tasks.push_back(FolderSize::task(size, placeOf(name, reader), m_context.held, m_context.isStopped));
}

void FolderScan::addSubfolder(std::string_view name, const DirectoryReader& reader) {
  m_subfolders.push_back(std::make_unique<FolderListing>());
  m_tasks.push_back(std::make_unique<FolderScan>(m_context, *m_subfolders.back(), m_root, joined(m_prefix, name),
                                                 placeOf(name, reader)));
}

void FolderScan::note(std::string_view name) {
  m_chunk.others.push_back({m_chunk.examined, std::string(name)});
}

FolderPlace FolderScan::placeOf(std::string_view name, const DirectoryReader& reader) {
  if (!m_hasTriedToHold) m_self = m_context.held.hold(reader.descriptor());
  m_hasTriedToHold = true;
  return {m_self, joinPath(m_place.canonicalPath, name)};
}

}  // namespace orvane
