#include "core/uninstaller/services/BundleInformation.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/uninstaller/PropertyList.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <system_error>

namespace orvane {
namespace {

constexpr std::size_t maxListBytes = 1024 * 1024;  // bytes

// Where the parts of a bundle lie: in a bundle of the desktop, and in a flat one.
struct BundleLayout {
  std::string_view informationList;
  std::string_view executables;  // folder
  std::string_view resources;    // folder
};
constexpr std::array layouts{
    BundleLayout{"Contents/Info.plist", "Contents/MacOS", "Contents/Resources"},
    BundleLayout{"Info.plist", "", ""},
};

// The real path of something in a bundle; absent when it does not lie there.
std::optional<std::string> pathInside(const std::string& canonicalBundle, std::string_view relative) {
  auto path = canonicalPath(relative.empty() ? canonicalBundle : joinPath(canonicalBundle, relative));
  if (!isSameOrInside(path, canonicalBundle)) return std::nullopt;
  return path;
}

std::optional<PropertyList> readInformationList(const std::string& canonicalBundle) {
  for (const auto& layout : layouts) {
    const auto path = pathInside(canonicalBundle, layout.informationList);
    if (!path || !itemExists(path->c_str())) continue;
    try {
      return PropertyList::parse(readFile(*path, maxListBytes));
    } catch (const std::system_error&) {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

// A name that takes part in paths or in output; absent when the list holds nothing that a reader could see.
std::optional<std::string> visibleText(const PropertyList& list, const char* key) {
  auto text = list.text(key);
  if (text && trimmed(*text).empty()) text.reset();
  return text;
}

std::optional<FileTime> accessOfFile(int folder, const char* name) {
  const auto status = readFileStatus(folder, name);
  if (!status || status->type != FileType::regular) return std::nullopt;
  return status->accessed;
}

std::optional<FileTime> newestAccessIn(const std::string& folder) {
  std::optional<FileTime> newest;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::refuse);
  while (const auto entry = reader ? reader->next() : std::nullopt) {
    const auto accessed = accessOfFile(reader->descriptor(), entry->nameBytes());
    if (accessed && (!newest || newest->date() < accessed->date())) newest = accessed;
  }
  return newest;
}

}  // namespace

BundleInformation readBundleInformation(const FileUrl& bundle) {
  BundleInformation result;
  if (const auto list = readInformationList(canonicalPath(bundle.path()))) {
    const auto either = [&](const char* first, const char* second) {
      auto text = visibleText(*list, first);
      return text ? text : visibleText(*list, second);
    };
    result.displayName = either("CFBundleDisplayName", "CFBundleName").value_or("");
    result.identifier = visibleText(*list, "CFBundleIdentifier");
    result.version = either("CFBundleShortVersionString", "CFBundleVersion");
    result.executableName = visibleText(*list, "CFBundleExecutable");
  }
  if (result.displayName.empty()) result.displayName = splitName(bundle.lastPathComponent()).base;
  return result;
}

std::optional<FileUrl> bundleIconFile(const FileUrl& bundle) {
  const auto canonicalBundle = canonicalPath(bundle.path());
  const auto list = readInformationList(canonicalBundle);
  if (!list) return std::nullopt;
  for (const auto* key : {"CFBundleIconFile", "CFBundleIconName", "NSIcon"}) {
    const auto name = visibleText(*list, key);
    if (!name) continue;
    for (const auto& layout : layouts) {
      // Most lists leave the extension out.
      for (const auto& file : {*name, *name + ".icns", *name + ".png"}) {
        const auto path =
            pathInside(canonicalBundle, layout.resources.empty() ? file : joinPath(layout.resources, file));
        const auto status = path ? readFileStatus(AT_FDCWD, path->c_str()) : std::nullopt;
        if (status && status->type == FileType::regular) return FileUrl(*path);
      }
    }
  }
  return std::nullopt;
}

std::optional<Date> newestExecutableAccess(const FileUrl& bundle, const BundleInformation& information) {
  const auto canonicalBundle = canonicalPath(bundle.path());
  if (information.executableName) {
    for (const auto& layout : layouts) {
      const auto named = layout.executables.empty() ? *information.executableName
                                                    : joinPath(layout.executables, *information.executableName);
      const auto path = pathInside(canonicalBundle, named);
      if (!path) continue;
      if (const auto accessed = accessOfFile(AT_FDCWD, path->c_str())) return accessed->date();
    }
  }
  const auto folder = pathInside(canonicalBundle, layouts.front().executables);
  const auto newest = folder ? newestAccessIn(*folder) : std::nullopt;
  return newest ? std::optional(newest->date()) : std::nullopt;
}

}  // namespace orvane
