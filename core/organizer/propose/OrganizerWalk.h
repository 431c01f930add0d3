#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/organizer/categories/CategoryChooser.h"
#include "core/organizer/records/Subfolders.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <stop_token>
#include <string>

namespace orvane {

// The items that the organizer may propose to move.
struct OrganizerCandidate {
  std::string relativePath;  // below the folder that is organised
  ItemKind kind = ItemKind::file;
  std::int64_t size = 0;  // bytes; of everything inside for a folder
  std::string category;
  std::optional<ItemIdentity> identity = std::nullopt;  // absent where it is gone again
};

// Which folders are left out, and where the candidates go.
struct OrganizerScope {
  std::string folder;           // canonical
  std::string destinationRoot;  // canonical
  Subfolders subfolders = Subfolders::keepWhole;
  std::set<std::string> learnedRoots;
  // Counts the files that are looked at, for whoever shows how far it is.
  std::atomic<std::size_t>* looked = nullptr;
};

// Gathers the candidates of a folder with their categories: of each folder the entries in order of their names, files
// before folders, then the subfolders one after the other. Hidden entries, links and whatever is neither file nor
// folder are left alone; projects and bundles stay whole. Unreadable folders yield nothing. A stop yields what was
// found so far. The calling thread visits them, when all are known.
using VisitCandidate = std::function<void(OrganizerCandidate&& candidate)>;
void visitOrganizerCandidates(const OrganizerScope& scope, const CategoryChooser& chooser, const std::stop_token& stop,
                              const VisitCandidate& visit);

}  // namespace orvane
