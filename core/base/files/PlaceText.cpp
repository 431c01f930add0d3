#include "core/base/files/PlaceText.h"

#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"

namespace orvane {

std::string pathOrUrl(const FileUrl& place) {
  return isValidUtf8(place.path()) ? place.path() : place.absoluteString();
}

std::optional<FileUrl> placeFromPathOrUrl(std::string_view text) {
  if (text.starts_with('/')) return FileUrl(std::string(text));
  return FileUrl::fromAbsoluteString(text);
}

std::string displayPath(std::string_view path, std::string_view home) {
  if (home != "/" && path != home && isSameOrInside(path, home)) {
    return "~" + escapedForDisplay(path.substr(home.size()));
  }
  return escapedForDisplay(path);
}

}  // namespace orvane
