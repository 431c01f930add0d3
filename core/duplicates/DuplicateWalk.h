#pragma once

#include "core/base/FileUrl.h"
#include "core/duplicates/FoundFiles.h"

#include <vector>

namespace orvane {

class FileStatusReader;
class PathValidator;
class SearchMonitor;

// Lists what a search for duplicates may look at: the regular files of at least one byte below the folders that the
// validator admits. Left out with all they hold: hidden folders, bundles, photo libraries and black holes. Left out
// too: hidden files (evicted cloud files are such), links, and roots inside the Library's caches and developer folders.
// What cannot be read is skipped without a word. Nothing useful comes of it once the monitor is stopped.
void listCandidates(FoundFiles& found, const std::vector<FileUrl>& folders, const PathValidator& validator,
                    const FileStatusReader& statusReader, SearchMonitor& monitor);

}  // namespace orvane
