#pragma once

#include "core/organizer/categories/FolderClassifier.h"
#include "core/safety/rules/FolderRules.h"
#include "core/scanning/scan/FolderRisk.h"
#include "core/scanning/scan/ScanContext.h"
#include "core/scanning/walk/FolderVisit.h"
#include "core/scanning/walk/RelativePathRule.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Lists one folder of a scan and makes the tasks for its subfolders.
class FolderScan : public FolderVisit<FolderScan> {
 public:
  // `root` is the path of the folder from which the walk came, `path` how this folder is reached from there.
  FolderScan(ScanContext& context, ScanListing& listing, std::string_view root, std::string path, UnreadFolder unread);
  FolderScan(FolderScan& parent, std::string_view name, UnreadFolder unread);

 private:
  friend FolderVisit<FolderScan>;
  // Everything that a folder's path decides for its entries.
  struct Rules {
    Rules(const FolderScan& scan, std::string_view prefix);
    FolderRules allowed;
    FolderClassifier classifier;
    FolderRisk risk;
    RelativePathRule relative;
    bool isCachesFolder;
  };

  [[nodiscard]] std::optional<Rules> enter() const;
  [[nodiscard]] bool takes(std::string_view name);
  [[nodiscard]] static bool needsStatus(const Rules& rules, const Entry& entry) noexcept;
  [[nodiscard]] std::optional<FileStatus> readStatus(const char* name) const noexcept;
  void file(const Rules& rules, const Entry& entry, const std::optional<FileStatus>& status);
  [[nodiscard]] Descent folder(const Rules& rules, std::string_view name);
  void finish() { publish(ListingBoard::Part::last); }

  [[nodiscard]] Descent wholeFolder(std::string_view name, const Rules& rules,
                                    FolderSize::Extent extent = FolderSize::Extent::likeScan);
  // Absent where it is none.
  [[nodiscard]] std::optional<Descent> buildFolder(std::string_view name, const Rules& rules);
  [[nodiscard]] Descent noted(std::string_view name, Descent::Kind kind);
  void note(std::string_view name);
  void publish(ListingBoard::Part part);
  [[nodiscard]] FileItem::Fields fieldsOf(std::string_view name, const FileStatus& status, const Rules& rules) const;

  ScanContext& m_context;
  ScanListing& m_listing;
  std::string_view m_root;
  std::string m_prefix;  // the path with a slash at its end
  ListingChunk m_chunk;
  std::vector<std::unique_ptr<ScanListing>> m_subfolders;
};

}  // namespace orvane
