#include "core/duplicates/records/DuplicateGroup.h"

#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/CheckedArithmetic.h"

#include <algorithm>

namespace orvane {
namespace {

bool isSelectedItem(const FileItem& item) noexcept {
  return item.isSelected();
}

std::size_t oldest(const std::vector<FileItem>& items) {
  const auto isOlder = [](const FileItem& left, const FileItem& right) {
    return left.createdDate() < right.createdDate();
  };
  return static_cast<std::size_t>(std::min_element(items.begin(), items.end(), isOlder) - items.begin());
}

std::size_t shortestPath(const std::vector<FileItem>& items) {
  std::size_t chosen = 0;
  auto shortest = perceivedCharacterCount(items.front().url().path());
  for (std::size_t i = 1; i < items.size(); ++i) {
    const auto length = perceivedCharacterCount(items[i].url().path());
    if (length >= shortest) continue;
    shortest = length;
    chosen = i;
  }
  return chosen;
}

}  // namespace

std::int64_t DuplicateGroup::selectedWastedBytes() const {
  return checkedMultiply<std::int64_t>(std::count_if(items.begin(), items.end(), isSelectedItem), fileSize);
}

std::int64_t DuplicateGroup::maxReclaimableBytes() const {
  if (items.size() < 2) return 0;
  return checkedMultiply(static_cast<std::int64_t>(items.size()) - 1, fileSize);
}

void DuplicateGroup::enforceKeepOneInvariant() noexcept {
  if (!items.empty() && std::all_of(items.begin(), items.end(), isSelectedItem)) items.front().setSelected(false);
}

void DuplicateGroup::setSelection(const Uuid& itemId, bool isSelected) noexcept {
  const auto item = std::find_if(items.begin(), items.end(), [&](const FileItem& it) { return it.id() == itemId; });
  if (item == items.end()) return;
  const auto selected = std::count_if(items.begin(), items.end(), isSelectedItem);
  if (isSelected && selected + 1 >= static_cast<std::ptrdiff_t>(items.size())) return;
  item->setSelected(isSelected);
  enforceKeepOneInvariant();
}

void DuplicateGroup::applyKeepStrategy(DuplicateKeepStrategy strategy) {
  if (items.size() < 2) return;
  const auto kept = strategy == DuplicateKeepStrategy::keepOldest ? oldest(items) : shortestPath(items);
  for (std::size_t i = 0; i < items.size(); ++i) items[i].setSelected(i != kept);
}

Json DuplicateGroup::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["fileSize"] = fileSize;
  json["hash"] = hash;
  json["items"] = Json::array();
  for (const auto& item : items) json["items"].push_back(item.toJson());
  return json;
}

DuplicateGroup DuplicateGroup::fromJson(const Json& json) {
  DuplicateGroup group;
  group.id = uuidAt(json, "id");
  group.fileSize = integerAt(json, "fileSize");
  group.hash = stringAt(json, "hash");
  const auto& items = requiredKey(json, "items");
  if (!items.is_array()) throw JsonError("\"items\" must be an array");
  for (const auto& item : items) group.items.push_back(FileItem::fromJson(item));
  return group;
}

}  // namespace orvane
