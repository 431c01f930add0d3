#include "core/rules/ScheduleCandidates.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/organizer/categories/FolderClassifier.h"
#include "core/scanning/scan/FolderRisk.h"
#include "core/scanning/walk/BundleNames.h"
#include "core/scanning/walk/FolderPlace.h"
#include "core/scanning/walk/WorkStack.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
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

struct Walk {
  HeldFolders held;
  std::atomic<bool> isStopped = false;

  // Folders are added by several threads and never move.
  WalkedFolder& add() {
    const std::lock_guard lock(mutex);
    return folders.emplace_back();
  }

  std::mutex mutex;
  std::deque<WalkedFolder> folders;
};

class ReadFolder : public WorkStack::Task {
 public:
  ReadFolder(Walk& walk, WalkedFolder& folder, const std::string& path, FolderPlace place)
      : m_walk(walk), m_folder(folder), m_prefix(joinPath(path, "")), m_place(std::move(place)) {}

  void run(WorkStack& stack) override {
    auto reader = m_place.open();
    if (!reader) return;
    const FolderClassifier classifier(m_prefix);
    const FolderRisk risk(m_prefix);
    while (const auto entry = reader->next()) {
      if (m_walk.isStopped.load(std::memory_order_relaxed)) return;
      if (!entry->name.starts_with('.')) examine(*entry, *reader, {classifier, risk});
    }
    stack.push(m_tasks);
  }

 private:
  struct Judges {
    const FolderClassifier& classifier;
    const FolderRisk& risk;
  };

  void examine(const DirectoryReader::Entry& entry, const DirectoryReader& reader, const Judges& judges) {
    auto type = entry.type;
    std::optional<FileStatus> status;
    if (type == FileType::regular || type == FileType::unknown) {
      status = readFileStatus(reader.descriptor(), entry.nameBytes());
      type = status ? status->type : FileType::other;
    }
    if (type == FileType::regular && status) return addFile(entry.name, *status, judges);
    if (type != FileType::directory || isBundleName(entry.name)) return;
    if (m_tasks.empty()) m_self = m_walk.held.hold(reader.descriptor());
    auto& folder = m_walk.add();
    m_folder.subfolders.push_back(&folder);
    m_tasks.push_back(std::make_unique<ReadFolder>(m_walk, folder, m_prefix + std::string(entry.name),
                                                   FolderPlace{m_self, joinPath(m_place.canonicalPath, entry.name)}));
  }

  void addFile(std::string_view name, const FileStatus& status, const Judges& judges) {
    FileItem::Fields fields;
    fields.url = FileUrl(std::string(m_prefix).append(name));
    fields.relativeStart = static_cast<std::uint32_t>(m_prefix.size());
    fields.identity = ItemIdentity::of(status);
    fields.fileSize = status.size;
    fields.createdDate = status.modified.date();
    fields.category = judges.classifier.classify(name, status.size);
    fields.riskLabel = judges.risk.evaluate(fields.category, name, fields.createdDate);
    m_folder.items.emplace_back(std::move(fields));
  }

  Walk& m_walk;
  WalkedFolder& m_folder;
  std::string m_prefix;  // the path with a slash at its end
  FolderPlace m_place;
  std::shared_ptr<const HeldFolder> m_self;
  WorkStack::Tasks m_tasks;
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

std::vector<FileItem> scheduleCandidates(std::span<const FileUrl> folders, const std::stop_token& stop) {
  Walk walk;
  std::vector<WalkedFolder*> tops;
  {
    WorkStack work;
    const std::stop_callback onStop(stop, [&] {
      walk.isStopped = true;
      work.stop();
    });
    WorkStack::Tasks tasks;
    for (auto& root : rootsOf(folders)) {
      tops.push_back(&walk.add());
      tasks.push_back(std::make_unique<ReadFolder>(walk, *tops.back(), root.folder.path(),
                                                   FolderPlace{nullptr, std::move(root.canonical)}));
    }
    work.push(tasks);
    work.work(foldersReadAlone);
    if (!work.isEmpty()) {
      work.start(WorkStack::processorCount() - 1);
      work.work();
    }
  }
  if (stop.stop_requested()) return {};
  return flattened(tops);
}

}  // namespace orvane
