#include "core/organizer/records/ProposedMove.h"

#include "core/base/text/Json.h"

#include <tuple>

namespace orvane {
namespace {

auto recordOf(const ProposedMove& move) {
  return std::tie(move.id, move.originalURL, move.targetURL, move.categoryName, move.fileSize, move.isSelected,
                  move.isDirectory, move.sourceRelativePath);
}

}  // namespace

bool ProposedMove::operator==(const ProposedMove& other) const {
  return recordOf(*this) == recordOf(other);
}

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
