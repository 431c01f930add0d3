#include "app/common/Text.h"

#include "core/base/files/PlaceText.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/UnicodeText.h"
#include "core/localization/LocalizationManager.h"

#include <cmath>

namespace orvane {

QString textFrom(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString localizedText(std::string_view key) {
  return textFrom(localized(key));
}

QString countedText(std::string_view key, std::int64_t count) {
  return textFrom(localized(key, count)).arg(textFrom(formatCount(count)));
}

QString shownName(std::string_view name) {
  return textFrom(escapedForDisplay(name));
}

QString shownPlace(const FileUrl& place, const FileUrl& home) {
  const auto folder = place.deletingLastPathComponent();
  std::string_view path = folder.path();
  if (path == home.path()) return QStringLiteral("~");
  if (path.starts_with(home.path() + "/")) path.remove_prefix(home.path().size() + 1);
  return shownName(path);
}

double milliseconds(Date date) {
  return std::round(unixSeconds(date) * 1000.0);
}

double milliseconds(const std::optional<Date>& date) {
  return date ? milliseconds(*date) : 0.0;
}

QString shownPath(std::string_view path, const FileUrl& home) {
  return textFrom(displayPath(path, home.path()));
}

}  // namespace orvane
