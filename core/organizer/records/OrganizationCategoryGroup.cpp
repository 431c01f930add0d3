#include "core/organizer/records/OrganizationCategoryGroup.h"

#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/values/CheckedArithmetic.h"

namespace orvane {

std::int64_t OrganizationCategoryGroup::totalSize() const {
  std::int64_t total = 0;
  for (const auto& move : moves) {
    if (move.isSelected) total = checkedAdd(total, move.fileSize);
  }
  return total;
}

std::string OrganizationCategoryGroup::formattedTotalSize() const {
  return formatByteCount(totalSize());
}

Json OrganizationCategoryGroup::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["name"] = name;
  json["destinationFolder"] = jsonFromUrl(destinationFolder);
  json["moves"] = Json::array();
  for (const auto& move : moves) json["moves"].push_back(move.toJson());
  return json;
}

}  // namespace orvane
