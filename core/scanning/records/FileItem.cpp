#include "core/scanning/records/FileItem.h"

#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/values/HashCombine.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

namespace orvane {

FileItem::FileItem(Fields fields)
    : m_id(fields.id),
      m_url(std::move(fields.url)),
      m_fileSize(fields.fileSize),
      m_createdDate(fields.createdDate),
      m_lastModifiedDate(fields.lastModifiedDate),
      m_lastOpenedDate(
          fields.lastOpenedDate.value_or(dateFromReferenceSeconds(std::numeric_limits<double>::quiet_NaN()))),
      m_category(fields.category),
      m_riskLabel(fields.riskLabel.value_or(defaultRisk(fields.category))),
      m_isSelected(m_riskLabel != RiskLabel::manual && fields.isSelected.value_or(m_riskLabel == RiskLabel::safe)),
      m_isCloudPlaceholder(fields.isCloudPlaceholder) {
  if (fields.identity) {
    const auto& identity = *fields.identity;
    m_lastModifiedDate = identity.modified.date();
    m_device = identity.device;
    m_inode = identity.inode;
    m_modifiedNanoseconds = static_cast<std::uint32_t>(identity.modified.nanoseconds);
    m_type = identity.type;
    if (m_type != FileType::directory) m_fileSize = identity.size;
  }
  const std::string_view path = m_url.path();
  if (fields.relativeStart && *fields.relativeStart <= path.size()) {
    m_relativeStart = *fields.relativeStart;
    return;
  }
  const std::string_view relative =
      fields.relativePath ? std::string_view(*fields.relativePath) : m_url.lastPathComponent();
  if (path.ends_with(relative) && path.size() < ownText) {
    m_relativeStart = static_cast<std::uint32_t>(path.size() - relative.size());
  } else {
    m_relativePath = RareText(relative);
  }
}

std::string_view FileItem::relativePath() const noexcept {
  if (m_relativeStart == ownText) return m_relativePath.get();
  return std::string_view(m_url.path()).substr(m_relativeStart);
}

std::optional<Date> FileItem::lastOpenedDate() const noexcept {
  if (std::isnan(referenceSeconds(m_lastOpenedDate))) return std::nullopt;
  return m_lastOpenedDate;
}

std::optional<ItemIdentity> FileItem::identity() const noexcept {
  if (m_type == FileType::unknown) return std::nullopt;
  const auto seconds = std::llround(unixSeconds(m_lastModifiedDate) - m_modifiedNanoseconds * 1e-9);
  return ItemIdentity{m_device, m_inode, m_fileSize, {seconds, m_modifiedNanoseconds}, m_type};
}

void FileItem::setSelected(bool value) noexcept {
  m_isSelected = value && m_riskLabel != RiskLabel::manual;
}

std::string FileItem::formattedSize() const {
  return formatByteCount(m_fileSize);
}

bool FileItem::operator==(const FileItem& other) const noexcept {
  return m_id == other.m_id && m_url == other.m_url && relativePath() == other.relativePath() &&
         m_fileSize == other.m_fileSize && m_createdDate == other.m_createdDate &&
         m_lastModifiedDate == other.m_lastModifiedDate && lastOpenedDate() == other.lastOpenedDate() &&
         m_category == other.m_category && m_riskLabel == other.m_riskLabel && m_isSelected == other.m_isSelected &&
         m_isCloudPlaceholder == other.m_isCloudPlaceholder;
}

Json FileItem::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(m_id);
  json["url"] = jsonFromUrl(m_url);
  json["relativePath"] = relativePath();
  json["fileSize"] = m_fileSize;
  json["createdDate"] = jsonFromDate(m_createdDate);
  json["lastModifiedDate"] = jsonFromDate(m_lastModifiedDate);
  if (const auto opened = lastOpenedDate()) json["lastOpenedDate"] = jsonFromDate(*opened);
  json["category"] = rawValue(m_category);
  json["riskLabel"] = rawValue(m_riskLabel);
  json["isSelected"] = m_isSelected;
  json["isCloudPlaceholder"] = m_isCloudPlaceholder;
  return json;
}

FileItem FileItem::fromJson(const Json& json) {
  const auto category = scanCategoryFromRawValue(stringAt(json, "category"));
  if (!category) throw JsonError(fmt::format("unknown \"category\" {}", stringAt(json, "category")));
  const auto label = riskLabelFromRawValue(stringAt(json, "riskLabel"));
  if (!label) throw JsonError(fmt::format("unknown \"riskLabel\" {}", stringAt(json, "riskLabel")));
  Fields fields;
  fields.id = uuidAt(json, "id");
  fields.url = urlAt(json, "url");
  fields.relativePath = stringAt(json, "relativePath");
  fields.fileSize = integerAt(json, "fileSize");
  fields.createdDate = dateAt(json, "createdDate");
  fields.lastModifiedDate = dateAt(json, "lastModifiedDate");
  if (const auto* opened = optionalKey(json, "lastOpenedDate")) {
    fields.lastOpenedDate = dateFrom(*opened, "lastOpenedDate");
  }
  fields.category = *category;
  fields.riskLabel = *label;
  fields.isSelected = booleanAt(json, "isSelected");
  fields.isCloudPlaceholder = booleanAt(json, "isCloudPlaceholder");
  return FileItem(std::move(fields));
}

}  // namespace orvane

std::size_t std::hash<orvane::FileItem>::operator()(const orvane::FileItem& item) const noexcept {
  std::size_t seed = 0;
  orvane::hashCombine(seed, item.id());
  orvane::hashCombine(seed, item.url());
  orvane::hashCombine(seed, item.relativePath());
  orvane::hashCombine(seed, item.fileSize());
  orvane::hashCombine(seed, orvane::referenceSeconds(item.createdDate()));
  orvane::hashCombine(seed, orvane::referenceSeconds(item.lastModifiedDate()));
  orvane::hashCombine(seed, item.lastOpenedDate().has_value());
  if (const auto opened = item.lastOpenedDate()) orvane::hashCombine(seed, orvane::referenceSeconds(*opened));
  orvane::hashCombine(seed, orvane::rawValue(item.category()));
  orvane::hashCombine(seed, orvane::rawValue(item.riskLabel()));
  orvane::hashCombine(seed, item.isSelected());
  orvane::hashCombine(seed, item.isCloudPlaceholder());
  return seed;
}
