#pragma once

#include "core/organizer/categories/NamedFiles.h"
#include "core/safety/records/Boundary.h"
#include "core/scanning/scan/BuildFolders.h"
#include "core/scanning/scan/StorageScanner.h"
#include "core/scanning/walk/ListingBoard.h"
#include "core/scanning/walk/TreeWalk.h"

#include <string>
#include <vector>

namespace orvane {

class FileStatusReader;
class PathValidator;

// The state that all folders of one scan share.
struct ScanContext {
  const PathValidator& validator;
  const FileStatusReader& statusReader;
  Boundary boundary;
  DeveloperCaches developerCaches;
  // Of no row where developer caches are left out.
  BuildFolders buildFolders;
  ListingBoard board;
  TreeWalk walk;
  NamedFiles namedFiles;
  ScanDigest digest;  // may be empty
};

}  // namespace orvane
