#include "core/organizer/categories/NamedFiles.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathPattern.h"
#include "core/base/files/PathText.h"

#include <algorithm>
#include <cassert>

namespace orvane {
namespace {

using File = SystemProfile::NamedFile;

constexpr NamedFiles::Places bitOf(File::Where where) noexcept {
  return static_cast<NamedFiles::Places>(1U << static_cast<unsigned>(where));
}

constexpr bool isDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

// Whether `text` begins as `shape` has it, in which "0" stands for any digit.
constexpr bool beginsLike(std::string_view text, std::string_view shape) noexcept {
  if (text.size() < shape.size()) return false;
  return std::ranges::equal(text.substr(0, shape.size()), shape,
                            [](char c, char like) { return like == '0' ? isDigit(c) : c == like; });
}

// Length of the day of this century that the text begins with; 0 where it begins with none.
constexpr std::size_t dayLength(std::string_view text) noexcept {
  if (!text.starts_with("20")) return 0;
  for (const std::string_view shape : {"0000-00-00", "00000000"}) {
    if (beginsLike(text, shape)) return shape.size();
  }
  return 0;
}

constexpr bool holdsDay(std::string_view name) noexcept {
  for (auto at = name.find("20"); at != std::string_view::npos; at = name.find("20", at + 1)) {
    const bool isInNumber = at > 0 && isDigit(name[at - 1]);
    if (!isInNumber && dayLength(name.substr(at)) > 0) return true;
  }
  return false;
}

constexpr bool beginsWithTime(std::string_view name) noexcept {
  const auto day = dayLength(name);
  if (day == 0 || day == name.size()) return false;
  constexpr std::string_view separators = "-_T ";
  return separators.find(name[day]) != std::string_view::npos && beginsLike(name.substr(day + 1), "00");
}

constexpr bool isDated(const File& row) noexcept {
  return row.check == File::Check::dated || row.check == File::Check::beginsWithTime;
}

std::string inLowerCase(std::string_view name) {
  std::string lower(name);
  std::ranges::transform(lower, lower.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

}  // namespace

NamedFiles::NamedFiles(const SystemProfile& profile) : m_profile(profile), m_downloads(DownloadsFolder::ofUser()) {
  if (profile.namedFiles().empty()) return;
  const auto screencasts = expandedHome("~/Videos/Screencasts");
  m_screencasts = {joinPath(screencasts, ""), joinPath(canonicalPath(screencasts), "")};
  for (const auto& file : profile.namedFiles()) {
    const auto category = scanCategoryFromRawValue(file.category);
    assert(category);
    m_rows.push_back({&file, category.value()});
    if (isDated(file)) continue;
    m_undatedRows.push_back(m_rows.back());
    if (file.where == File::Where::anywhere) m_undatedRowsAnywhere.push_back(m_rows.back());
  }
}

NamedFiles::Places NamedFiles::placesOf(std::string_view folderPrefix, bool inDownloads) const noexcept {
  Places places = bitOf(File::Where::anywhere);
  if (inDownloads) places |= bitOf(File::Where::downloads);
  if (std::ranges::any_of(m_screencasts, [&](const auto& prefix) { return folderPrefix.starts_with(prefix); })) {
    places |= bitOf(File::Where::screencasts);
  }
  const auto folder = lastComponent(folderPrefix);
  if (std::ranges::find(m_profile.screenshotFolders(), folder) != m_profile.screenshotFolders().end()) {
    places |= bitOf(File::Where::screenshots);
  }
  return places;
}

const NamedFiles::Row* NamedFiles::rowOf(std::string_view folderPrefix, Places places, std::string_view name) const {
  std::string lower;
  const auto passes = [&](const File& file) {
    switch (file.check) {
      case File::Check::lowerCase:
        if (lower.empty()) lower = inLowerCase(name);
        return fitsWildcard(lower, file.name);
      case File::Check::dated:
        return fitsWildcard(name, file.name);
      case File::Check::beginsWithTime:
        return fitsWildcard(name, file.name) && beginsWithTime(name);
      case File::Check::coreDump:
        return fitsWildcard(name, file.name) && m_profile.isCoreDump(std::string(folderPrefix).append(name));
    }
    return false;
  };
  const auto& undated = places == bitOf(File::Where::anywhere) ? m_undatedRowsAnywhere : m_undatedRows;
  for (const auto& row : holdsDay(name) ? m_rows : undated) {
    if ((places & bitOf(row.file->where)) != 0 && passes(*row.file)) return &row;
  }
  return nullptr;
}

}  // namespace orvane
