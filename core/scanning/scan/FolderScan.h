#pragma once

#include "core/base/files/DirectoryReader.h"
#include "core/organizer/categories/FolderClassifier.h"
#include "core/safety/rules/FolderRules.h"
#include "core/scanning/scan/FolderRisk.h"
#include "core/scanning/scan/ScanContext.h"
#include "core/scanning/walk/FolderPlace.h"
#include "core/scanning/walk/RelativePathRule.h"
#include "core/scanning/walk/WorkStack.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Lists one folder of a scan and makes the tasks for its subfolders.
class FolderScan : public WorkStack::Task {
 public:
  // `root` is the path of the folder from which the walk came, `path` how this folder is reached from there.
  FolderScan(ScanContext& context, FolderListing& listing, std::string_view root, std::string path, FolderPlace place);
  void run(WorkStack& stack) override;

 private:
  struct Entry {
    std::size_t nameStart;
    FileType type;
  };
  // Everything that a folder's path decides for its entries.
  struct Rules {
    Rules(const FolderScan& scan, std::string_view prefix);
    FolderRules allowed;
    FolderClassifier classifier;
    FolderRisk risk;
    RelativePathRule relative;
    bool isCachesFolder;
  };

  void publish(ListingBoard::Part part, WorkStack& stack);
  bool readEntries(DirectoryReader& reader);
  void examineEntries(const DirectoryReader& reader, const Rules& rules);
  void examine(const char* name, FileType type, const DirectoryReader& reader, const Rules& rules);
  void examineFolder(std::string_view name, const DirectoryReader& reader, const Rules& rules);
  void addFile(std::string_view name, const FileStatus& status, const Rules& rules);
  void addWholeFolder(std::string_view name, const DirectoryReader& reader, const Rules& rules);
  void addSubfolder(std::string_view name, const DirectoryReader& reader);
  void note(std::string_view name);
  [[nodiscard]] FolderPlace placeOf(std::string_view name, const DirectoryReader& reader);
  [[nodiscard]] FileItem::Fields fieldsOf(std::string_view name, const FileStatus& status, const Rules& rules) const;

  ScanContext& m_context;
  FolderListing& m_listing;
  std::string_view m_root;
  std::string m_prefix;  // the path with a slash at its end
  FolderPlace m_place;

  std::vector<Entry> m_entries;
  std::string m_names;  // each with a NUL byte
  ListingChunk m_chunk;
  std::shared_ptr<const HeldFolder> m_self;
  bool m_hasTriedToHold = false;
  std::vector<std::unique_ptr<FolderListing>> m_subfolders;
  WorkStack::Tasks m_tasks;
};

}  // namespace orvane
