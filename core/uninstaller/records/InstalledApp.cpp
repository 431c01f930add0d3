#include "core/uninstaller/records/InstalledApp.h"

#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"

namespace orvane {

std::string InstalledApp::formattedSize() const {
  return formatByteCount(appSize);
}

Json InstalledApp::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["name"] = name;
  if (bundleIdentifier) json["bundleIdentifier"] = *bundleIdentifier;
  if (version) json["version"] = *version;
  json["url"] = jsonFromUrl(url);
  json["appSize"] = appSize;
  if (lastOpenedDate) json["lastOpenedDate"] = jsonFromDate(*lastOpenedDate);
  json["isSystemProtected"] = isSystemProtected;
  if (system) {
    json["kind"] = rawValue(system->kind);
    json["isOrphan"] = system->isOrphan;
    if (!system->removalCommand.empty()) json["removalCommand"] = system->removalCommand;
  }
  return json;
}

}  // namespace orvane
