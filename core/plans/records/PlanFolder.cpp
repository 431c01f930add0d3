#include "core/plans/records/PlanFolder.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"

#include <string>

namespace orvane {

std::optional<FileUrl> planFolder(std::string_view text) {
  const std::string path = expandedHome(trimmed(text));
  if (path.empty() || path.find('\0') != std::string::npos) return std::nullopt;
  if (path.starts_with('/')) return FileUrl(standardizedPath(path));
  return FileUrl(standardizedPath(joinPath(canonicalPath("."), path)));
}

}  // namespace orvane
