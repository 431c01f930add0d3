#pragma once

#include "core/base/files/FileUrl.h"
#include "core/duplicates/FoundFiles.h"

#include <vector>

namespace orvane {

class FileStatusReader;
class PathValidator;
class SearchMonitor;

// Whether a search looks into the folder when it is given it: not where it lies in the Library's caches or developer
// folders, which are full of copies that belong there.
[[nodiscard]] bool isSearchable(const FileUrl& folder) noexcept;

// Lists what a search for duplicates may look at: the regular files of at least one byte below the folders that the
// validator admits. Left out with all they hold: hidden folders, bundles, photo libraries and black holes. Left out
// too: hidden files (evicted cloud files are such), links, and roots that are not searchable.
// Skips unreadable files without a word. Nothing useful comes of it once the monitor is stopped.
void listCandidates(FoundFiles& found, const std::vector<FileUrl>& folders, const PathValidator& validator,
                    const FileStatusReader& statusReader, SearchMonitor& monitor);

}  // namespace orvane
