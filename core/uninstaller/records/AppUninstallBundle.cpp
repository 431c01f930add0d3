#include "core/uninstaller/records/AppUninstallBundle.h"

#include "core/base/text/Json.h"

namespace orvane {

Json AppUninstallBundle::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["app"] = app.toJson();
  json["leftovers"] = Json::array();
  for (const auto& leftover : leftovers) json["leftovers"].push_back(leftover.toJson());
  return json;
}

}  // namespace orvane
