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
// Most folders hold no more files than this.
constexpr std::size_t usualFiles = 32;
// The room of findings that a digest took on this thread; an allocation in every folder makes malloc tidy up each time.
thread_local std::vector<ScanEvent> spareEvents;

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
    : allowed(scan.m_context.validator, withoutSlash(prefix), scan.canonicalPath(), scan.m_context.boundary),
      classifier(prefix, scan.m_context.namedFiles),
      risk(prefix),
      relative(scan.m_root, prefix),
      isCachesFolder(lastComponent(prefix) == applicationCachesName) {}

FolderScan::FolderScan(ScanContext& context, ScanListing& listing, std::string_view root, std::string path,
                       UnreadFolder unread)
    : FolderVisit(context.walk, std::move(unread)),
      m_context(context),
      m_listing(listing),
      m_root(root),
      m_prefix(withSlash(std::move(path))) {}

FolderScan::FolderScan(FolderScan& parent, std::string_view name, UnreadFolder unread)
    : FolderScan(parent.m_context, *parent.m_subfolders.emplace_back(std::make_unique<ScanListing>()), parent.m_root,
                 joined(parent.m_prefix, name), std::move(unread)) {}

std::optional<FolderScan::Rules> FolderScan::enter() const {
  std::optional<Rules> rules(std::in_place, *this, m_prefix);
  if (rules->allowed.refusesAllBelow()) rules.reset();
  return rules;
}

void FolderScan::publish(ListingBoard::Part part) {
  if (m_context.digest && m_chunk.wholeFolders.empty()) {
    m_chunk.digest(m_context.digest);
    if (m_chunk.events.empty()) spareEvents = std::move(m_chunk.events);
  }
  m_context.board.publish(m_listing, part, std::exchange(m_chunk, {}), std::exchange(m_subfolders, {}));
  if (part == ListingBoard::Part::more) m_walk.work.push(m_tasks, *this, WorkStack::Maker::goesOn);
}

bool FolderScan::takes(std::string_view name) {
  if (name.starts_with('.') && !m_context.buildFolders.isNamed(name)) return false;
  if (m_chunk.examined == entriesPerChunk) publish(ListingBoard::Part::more);
  return true;
}

bool FolderScan::needsStatus(const Rules& rules, const Entry& entry) noexcept {
  return entry.type == FileType::symbolicLink || rules.allowed.admits(entry.name);
}

std::optional<FileStatus> FolderScan::readStatus(const char* name) const noexcept {
  return m_context.statusReader.read(descriptor(), name);
}

void FolderScan::file(const Rules& rules, const Entry& entry, const std::optional<FileStatus>& status) {
  if (entry.name.starts_with('.')) return;
  if (!status) return note(entry.name);
  const bool isFile =
      status->type == FileType::regular && (entry.type == FileType::regular || rules.allowed.admits(entry.name));
  // Only a link's own path has to be resolved.
  const bool isLink = status->type == FileType::symbolicLink &&
                      m_context.validator.isPathAllowed(FileUrl(joined(m_prefix, entry.name)), m_context.boundary);
  if (!isFile && !isLink) return note(entry.name);
  auto fields = fieldsOf(entry.name, *status, rules);
  fields.category = rules.classifier.classify(entry.name, status->size);
  fields.riskLabel = rules.risk.evaluate(fields.category, entry.name, fields.createdDate);
  fields.isCloudPlaceholder = CloudFolderDetector::isPlaceholderName(entry.name);
  if (m_chunk.events.empty()) {
    m_chunk.events = std::move(spareEvents);
    m_chunk.events.reserve(usualFiles);
  }
  m_chunk.events.emplace_back(std::in_place_type<FileItem>, std::move(fields));
  ++m_chunk.examined;
}

Descent FolderScan::folder(const Rules& rules, std::string_view name) {
  // A folder that is refused is no finding, but what it holds may be.
  if (rules.allowed.admits(name)) {
    if (auto build = buildFolder(name, rules)) return *std::move(build);
    if (name.starts_with('.')) return {};
    if (isBlackHoleName(name)) return noted(name, Descent::Kind::skip);
    const std::string path = joined(m_prefix, name);
    if (rules.isCachesFolder && path.find(applicationCachesFragment) != std::string::npos) {
      return wholeFolder(name, rules);
    }
    if (isBelowDeveloperCaches(path)) {
      if (m_context.developerCaches == DeveloperCaches::include) return wholeFolder(name, rules);
      return noted(name, Descent::Kind::skip);
    }
  }
  if (name.starts_with('.')) return {};
  return noted(name, isBundleName(name) ? Descent::Kind::skip : Descent::Kind::descend);
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

std::optional<Descent> FolderScan::buildFolder(std::string_view name, const Rules& rules) {
  if (!m_context.buildFolders.holds(descriptor(), std::string(name))) return std::nullopt;
  auto descent = wholeFolder(name, rules, FolderSize::Extent::everything);
  if (descent.kind != Descent::Kind::whole) return descent;
  auto& fields = m_chunk.wholeFolders.back().fields;
  fields.category = ScanCategory::developerCaches;
  fields.riskLabel = RiskLabel::review;
  // A build was last of use when its project was worked on.
  fields.lastOpenedDate = m_context.buildFolders.lastWorkedOn(descriptor());
  return descent;
}

Descent FolderScan::wholeFolder(std::string_view name, const Rules& rules, FolderSize::Extent extent) {
  const auto status = readStatus(std::string(name).c_str());
  if (!status || status->type != FileType::directory) return noted(name, Descent::Kind::skip);
  auto size = std::make_shared<FolderSize>([&board = m_context.board] { board.sizeCompleted(); }, extent);
  m_chunk.wholeFolders.push_back({m_chunk.events.size(), fieldsOf(name, *status, rules), size});
  m_chunk.events.emplace_back(ScanProgress{});
  ++m_chunk.examined;
  return {Descent::Kind::whole, std::move(size)};
}

Descent FolderScan::noted(std::string_view name, Descent::Kind kind) {
  note(name);
  return {kind};
}

void FolderScan::note(std::string_view name) {
  m_chunk.others.push_back({m_chunk.examined++, std::string(name)});
}

}  // namespace orvane
