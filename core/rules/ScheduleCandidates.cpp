#include "core/rules/ScheduleCandidates.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/organizer/categories/FolderClassifier.h"
#include "core/scanning/scan/FolderRisk.h"
#include "core/scanning/walk/BundleNames.h"
#include "core/scanning/walk/FolderVisit.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

// Folders that are read before it pays to start threads.
constexpr std::size_t foldersReadAlone = 8;

struct WalkedFolder {
  std::vector<FileItem> items;
  std::vector<WalkedFolder*> subfolders;
};

class ReadFolder : public FolderVisit<ReadFolder> {
 public:
  struct Rules {
    FolderClassifier classifier;
    FolderRisk risk;
  };

  ReadFolder(TreeWalk& walk, const NamedFiles& namedFiles, SteadyList<WalkedFolder>& folders, const std::string& path,
             UnreadFolder unread)
      : FolderVisit(walk, std::move(unread)),
        m_namedFiles(namedFiles),
        m_folders(folders),
        m_folder(folders.add()),
        m_prefix(joinPath(path, "")) {}
  ReadFolder(ReadFolder& parent, std::string_view name, UnreadFolder unread)
      : ReadFolder(parent.m_walk, parent.m_namedFiles, parent.m_folders, joinPath(parent.m_prefix, name),
                   std::move(unread)) {
    parent.m_folder.subfolders.push_back(&m_folder);
  }

  [[nodiscard]] WalkedFolder& found() const noexcept { return m_folder; }

  [[nodiscard]] std::optional<Rules> enter() const {
    return Rules{FolderClassifier(m_prefix, m_namedFiles), FolderRisk(m_prefix)};
  }

  [[nodiscard]] static Descent folder(const Rules& /*rules*/, std::string_view name) {
    return {isBundleName(name) ? Descent::Kind::skip : Descent::Kind::descend};
  }

  void file(const Rules& rules, const Entry& entry, const std::optional<FileStatus>& status) {
    if (!status || status->type != FileType::regular) return;
    FileItem::Fields fields;
    fields.url = FileUrl(std::string(m_prefix).append(entry.name));
    fields.relativeStart = static_cast<std::uint32_t>(m_prefix.size());
    fields.identity = ItemIdentity::of(*status);
    fields.fileSize = status->size;
    fields.createdDate = status->modified.date();
    fields.category = rules.classifier.classify(entry.name, status->size);
    fields.riskLabel = rules.risk.evaluate(fields.category, entry.name, fields.createdDate);
    m_folder.items.emplace_back(std::move(fields));
  }

 private:
  const NamedFiles& m_namedFiles;
  SteadyList<WalkedFolder>& m_folders;
  WalkedFolder& m_folder;
  std::string m_prefix;  // the path with a slash at its end
};

struct Root {
  FileUrl folder;
  std::string canonical;
};

std::vector<Root> rootsOf(std::span<const FileUrl> folders) {
  std::vector<Root> all;
  all.reserve(folders.size());
  for (const auto& folder : folders) all.push_back({folder, canonicalPath(folder.path())});
  std::vector<Root> result;
  for (std::size_t i = 0; i < all.size(); ++i) {
    bool isCovered = false;
    for (std::size_t j = 0; j < all.size() && !isCovered; ++j) {
      const bool isSame = all[i].canonical == all[j].canonical;
      isCovered = i != j && isSameOrInside(all[i].canonical, all[j].canonical) && (!isSame || j < i);
    }
    if (!isCovered) result.push_back(all[i]);
  }
  return result;
}

std::vector<FileItem> flattened(const std::vector<WalkedFolder*>& tops) {
  std::vector<FileItem> result;
  std::vector<WalkedFolder*> waiting(tops.rbegin(), tops.rend());
  while (!waiting.empty()) {
    auto& folder = *waiting.back();
    waiting.pop_back();
    waiting.insert(waiting.end(), folder.subfolders.rbegin(), folder.subfolders.rend());
    std::move(folder.items.begin(), folder.items.end(), std::back_inserter(result));
    folder.items = {};
  }
  return result;
}

}  // namespace

std::vector<FileItem> scheduleCandidates(std::span<const FileUrl> folders, const std::stop_token& stop,
                                         const SystemProfile& profile) {
  const NamedFiles namedFiles(profile);
  SteadyList<WalkedFolder> found;
  std::vector<WalkedFolder*> tops;
  TreeWalk walk;
  WorkStack::Tasks tasks;
  for (auto& root : rootsOf(folders)) {
    auto task = std::make_unique<ReadFolder>(walk, namedFiles, found, root.folder.path(),
                                             UnreadFolder{nullptr, std::move(root.canonical)});
    tops.push_back(&task->found());
    tasks.push_back(std::move(task));
  }
  walk.run(std::move(tasks), foldersReadAlone, stop);
  if (stop.stop_requested()) return {};
  return flattened(tops);
}

}  // namespace orvane
