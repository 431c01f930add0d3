#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/scanning/records/RiskLabel.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// One file, or one folder that stands for its whole content, found by a scan. Everything but the selection is fixed
// once it is built. Equality and hashing look at every field of the record, the selection included, but not at the
// identity, which no stored form has.
class FileItem {
 public:
  struct Fields {
    Uuid id = Uuid::random();
    FileUrl url;
    std::optional<std::string> relativePath;  // as shown to the user; the last path component when absent
    // Where in the URL's path the relative path begins: a cheaper way to give one that is the path's end.
    std::optional<std::uint32_t> relativeStart;
    std::int64_t fileSize = 0;  // bytes
    Date createdDate;
    Date lastModifiedDate;
    std::optional<Date> lastOpenedDate;
    ScanCategory category = ScanCategory::manualReview;
    std::optional<RiskLabel> riskLabel;  // the category's when absent
    std::optional<bool> isSelected;      // exactly the safe items when absent; never for a manual item
    bool isCloudPlaceholder = false;
    // Of the item as it was found; decides lastModifiedDate, and for a file fileSize, where it is given.
    std::optional<ItemIdentity> identity;
  };
  explicit FileItem(Fields fields);

  [[nodiscard]] const Uuid& id() const noexcept { return m_id; }
  [[nodiscard]] const FileUrl& url() const noexcept { return m_url; }
  [[nodiscard]] std::string_view relativePath() const noexcept;
  [[nodiscard]] std::int64_t fileSize() const noexcept { return m_fileSize; }
  [[nodiscard]] Date createdDate() const noexcept { return m_createdDate; }
  [[nodiscard]] Date lastModifiedDate() const noexcept { return m_lastModifiedDate; }
  [[nodiscard]] std::optional<Date> lastOpenedDate() const noexcept;
  [[nodiscard]] ScanCategory category() const noexcept { return m_category; }
  [[nodiscard]] RiskLabel riskLabel() const noexcept { return m_riskLabel; }
  [[nodiscard]] bool isSelected() const noexcept { return m_isSelected; }
  [[nodiscard]] bool isCloudPlaceholder() const noexcept { return m_isCloudPlaceholder; }
  // Absent for an item that was not read from the disk.
  [[nodiscard]] std::optional<ItemIdentity> identity() const noexcept;
  [[nodiscard]] bool isFolder() const noexcept { return m_type == FileType::directory; }

  // A manual item stays unselected whatever is asked.
  void setSelected(bool value) noexcept;

  [[nodiscard]] std::string formattedSize() const;

  bool operator==(const FileItem& other) const noexcept;

  // The given form of the record, keys in field order; "lastOpenedDate" is left out when absent.
  [[nodiscard]] Json toJson() const;
  // Throws JsonError.
  static FileItem fromJson(const Json& json);

 private:
  // A relative path is nearly always the end of the path: half a million items then keep one text each, not two.
  static constexpr std::uint32_t ownText = UINT32_MAX;

  // A text that hardly any item has, in the room of a pointer.
  class RareText {
   public:
    RareText() = default;
    explicit RareText(std::string_view text) : m_text(std::make_unique<std::string>(text)) {}
    RareText(const RareText& other) : m_text(other.m_text ? std::make_unique<std::string>(*other.m_text) : nullptr) {}
    RareText(RareText&&) noexcept = default;
    RareText& operator=(const RareText& other) { return *this = RareText(other); }
    RareText& operator=(RareText&&) noexcept = default;
    ~RareText() = default;
    [[nodiscard]] std::string_view get() const noexcept { return m_text ? std::string_view(*m_text) : ""; }

   private:
    std::unique_ptr<std::string> m_text;
  };

  Uuid m_id;
  FileUrl m_url;
  RareText m_relativePath;  // only when m_relativeStart is ownText
  std::int64_t m_fileSize;
  Date m_createdDate;
  Date m_lastModifiedDate;
  Date m_lastOpenedDate;  // not a number when absent
  std::uint64_t m_device = 0;
  std::uint64_t m_inode = 0;
  // The identity's whole seconds are those of m_lastModifiedDate, which is too coarse for the rest.
  std::uint32_t m_modifiedNanoseconds = 0;
  std::uint32_t m_relativeStart = ownText;  // where in the path the relative path begins
  ScanCategory m_category;
  RiskLabel m_riskLabel;
  bool m_isSelected;
  bool m_isCloudPlaceholder;
  FileType m_type = FileType::unknown;  // unknown where there is no identity
};

}  // namespace orvane

template <>
struct std::hash<orvane::FileItem> {
  std::size_t operator()(const orvane::FileItem& item) const noexcept;
};
