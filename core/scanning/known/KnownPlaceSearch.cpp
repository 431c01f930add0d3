#include "core/scanning/known/KnownPlaceSearch.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/platform/FileStatusReader.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/walk/FolderSize.h"

#include <fcntl.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <set>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t foldersReadAlone = 32;

// Takes what fits a pattern, and the error of each folder on the way that this user may not open.
struct Visitor {
  std::function<void(std::string path, int folder, const char* name)> found;
  std::function<void(int error)> missed = [](int) {};
};

// Visits what fits the components below an open folder, which has the path.
void match(int folder, const std::string& path, std::span<const std::string> components, const Visitor& visitor) {
  const auto follow = [&](const char* name) {
    if (components.size() == 1) return visitor.found(joinPath(path, name), folder, name);
    const auto below = DirectoryReader::open(folder, name, DirectoryReader::Links::refuse);
    if (!below) return visitor.missed(errno);
    match(below->descriptor(), joinPath(path, name), components.subspan(1), visitor);
  };
  if (components.front().find_first_of("*[") == std::string::npos) return follow(components.front().c_str());
  auto reader = DirectoryReader::open(folder, ".", DirectoryReader::Links::refuse);
  if (!reader) return;
  std::set<std::string> names;
  while (const auto entry = reader->next()) {
    if (fitsComponent(entry->name, components.front())) names.emplace(entry->name);
  }
  for (const auto& name : names) follow(name.c_str());
}

void matchBelow(const std::string& base, const std::vector<PathPattern>& patterns, const Visitor& visitor) {
  if (base.empty()) return;
  const auto folder = openFolderWithoutLinks(AT_FDCWD, base);
  if (!folder) return;
  for (const auto& pattern : patterns) match(folder.get(), base, pattern.components(), visitor);
}

bool isItem(const FileStatus& status, SystemProfile::Unit unit) noexcept {
  return status.type == FileType::regular || (status.type == FileType::directory && unit == SystemProfile::Unit::whole);
}

}  // namespace

KnownPlaceSearch::KnownPlaceSearch(const PathValidator& validator, const FileStatusReader& statusReader)
    : m_validator(validator), m_statusReader(statusReader) {}

std::vector<KnownPlaceSearch::Found> KnownPlaceSearch::find(const std::stop_token& stop) const {
  const auto& table = m_validator.knownPlaces();
  std::vector<Found> places;
  for (const auto& row : table.rows()) {
    if (stop.stop_requested()) return {};
    const auto take = [&](std::string path, int folder, const char* name) {
      if (table.rowOf(path) != &row) return;
      const auto status = m_statusReader.read(folder, name);
      if (!status || !isItem(*status, row.place->unit)) return;
      // Content of a Trash is shown, though no rule admits it.
      const bool isShown =
          row.category == ScanCategory::trash || m_validator.isPathAllowed(FileUrl(path), Boundary({FileUrl(path)}));
      if (isShown) places.push_back({std::move(path), *status, &row});
    };
    matchBelow(table.folder(row.place->base), row.patterns, {take});
  }
  addOtherTrashes(places, stop);
  return withoutNested(std::move(places));
}

void KnownPlaceSearch::addOtherTrashes(std::vector<Found>& places, const std::stop_token& stop) const {
  const auto& table = m_validator.knownPlaces();
  const auto* row = table.trashRow();
  if (row == nullptr) return;
  for (auto& path : table.profile().itemsInOtherTrashes(stop)) {
    const auto status = m_statusReader.read(AT_FDCWD, path.c_str());
    if (status && isItem(*status, row->place->unit)) places.push_back({std::move(path), *status, row});
  }
}

// No item lies in another: it would move twice and count twice. Of two alike the outer one stays; where the inner one
// is another matter, the outer one is not taken whole.
std::vector<KnownPlaceSearch::Found> KnownPlaceSearch::withoutNested(std::vector<Found> places) {
  std::unordered_map<std::string_view, std::size_t> byPath;
  for (std::size_t i = 0; i < places.size(); ++i) byPath.emplace(places[i].path, i);
  std::vector<bool> isLeftOut(places.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    for (auto holder = parentPath(places[i].path); holder.size() > 1; holder = parentPath(holder)) {
      const auto outer = byPath.find(holder);
      if (outer == byPath.end()) continue;
      const auto& outerPlace = places[outer->second];
      const bool areAlike = outerPlace.row->label == places[i].row->label;
      isLeftOut[areAlike ? i : outer->second] = true;
    }
  }
  std::size_t at = 0;
  std::erase_if(places, [&](const Found&) { return isLeftOut[at++]; });
  return places;
}

bool KnownPlaceSearch::isInUse(std::string_view path, const KnownPlaceTable::Row& row) const {
  const auto& table = m_validator.knownPlaces();
  const auto program = table.componentOf(row, path);
  bool isInUse = table.profile().hasOpenFiles(std::string(path));
  for (const auto& sign : row.place->busy) {
    std::string pattern(sign.pattern);
    if (const auto mark = pattern.find('%'); mark != std::string::npos) pattern.replace(mark, 1, program);
    const auto look = [&](const std::string& signPath, int /*folder*/, const char* /*name*/) {
      isInUse = isInUse || table.profile().isBusySign(signPath, sign.check, program);
    };
    // A program of this user may well have its sign there.
    const auto missed = [&](int error) { isInUse = isInUse || error == EACCES; };
    matchBelow(table.folder(sign.base), PathPattern::alternatives(pattern), {look, missed});
  }
  return isInUse;
}

std::vector<FileItem> KnownPlaceSearch::sized(const std::vector<Found>& places, const std::stop_token& stop) const {
  std::vector<std::shared_ptr<FolderSize>> sizes;
  WorkStack::Tasks tasks;
  TreeWalk walk;
  for (const auto& place : places) {
    sizes.push_back(std::make_shared<FolderSize>(FolderSize::Extent::everything));
    if (place.status.type != FileType::directory) continue;
    tasks.push_back(FolderSize::task(sizes.back(), UnreadFolder{nullptr, place.path}, walk));
  }
  walk.run(std::move(tasks), foldersReadAlone, stop);
  if (stop.stop_requested()) return {};
  const auto& home = m_validator.knownPlaces().folder(SystemProfile::Base::home);
  std::vector<FileItem> items;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto& [path, status, row] = places[i];
    FileItem::Fields fields;
    fields.url = FileUrl(path);
    if (isSameOrInside(path, home)) fields.relativeStart = static_cast<std::uint32_t>(home.size() + 1);
    fields.identity = ItemIdentity::of(status);
    fields.fileSize = status.type == FileType::directory ? sizes[i]->bytes() : status.size;
    fields.createdDate = status.created ? status.created->date() : status.modified.date();
    fields.lastOpenedDate = status.accessed.date();
    fields.category = row->category;
    fields.riskLabel = row->label;
    if (row->category == ScanCategory::trash || isInUse(path, *row)) fields.isSelected = false;
    items.emplace_back(std::move(fields));
  }
  return items;
}

}  // namespace orvane
