#include "core/organizer/ProposedMove.h"

#include "core/base/Json.h"

namespace orvane {

Json ProposedMove::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["originalURL"] = jsonFromUrl(originalURL);
  json["targetURL"] = jsonFromUrl(targetURL);
  json["categoryName"] = categoryName;
  json["fileSize"] = fileSize;
  json["isSelected"] = isSelected;
  json["isDirectory"] = isDirectory;
  json["sourceRelativePath"] = sourceRelativePath;
  return json;
}

}  // namespace orvane
