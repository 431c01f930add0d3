#include "core/scanning/records/KnownPlaceTable.h"

#include "core/base/files/CanonicalPath.h"

#include <algorithm>
#include <array>
#include <optional>

namespace orvane {
namespace {

using Base = SystemProfile::Base;

constexpr std::array bases{Base::root, Base::home, Base::cache, Base::config, Base::data, Base::state, Base::runtime};

std::optional<std::string_view> relativeTo(std::string_view path, std::string_view folder) noexcept {
  if (folder.empty() || !path.starts_with(folder)) return std::nullopt;
  if (path.size() == folder.size()) return "";
  if (path[folder.size()] != '/') return std::nullopt;
  return path.substr(folder.size() + 1);
}

}  // namespace

KnownPlaceTable::KnownPlaceTable(const SystemProfile& profile) : m_profile(profile) {
  for (const auto base : bases) {
    m_namedFolders.push_back(profile.baseFolder(base));
    m_folders.push_back(canonicalPath(m_namedFolders.back()));
  }
  for (const auto& place : profile.knownPlaces()) {
    m_rows.push_back({&place, PathPattern::alternatives(place.pattern),
                      scanCategoryFromRawValue(place.category).value(), riskLabelFromRawValue(place.label).value()});
  }
}

const std::string& KnownPlaceTable::folder(Base base) const noexcept {
  return m_folders[static_cast<std::size_t>(base)];
}

std::optional<std::string_view> KnownPlaceTable::relative(const Row& row, std::string_view path) const noexcept {
  const auto found = relativeTo(path, folder(row.place->base));
  return found ? found : relativeTo(path, m_namedFolders[static_cast<std::size_t>(row.place->base)]);
}

PathPattern::Fit KnownPlaceTable::fit(const Row& row, std::string_view path) const noexcept {
  const auto rest = relative(row, path);
  if (!rest) return PathPattern::Fit::none;
  for (const auto& pattern : row.patterns) {
    if (const auto fit = pattern.fit(*rest); fit != PathPattern::Fit::none) return fit;
  }
  return PathPattern::Fit::none;
}

std::string_view KnownPlaceTable::programOf(const Row& row, std::string_view path) const noexcept {
  return row.place->program.empty() ? componentOf(row, path) : row.place->program;
}

std::string_view KnownPlaceTable::titleOf(const Row& row, std::string_view path) const noexcept {
  const auto program = programOf(row, path);
  for (const auto& [pattern, title] : m_profile.programTitles()) {
    if (fitsWildcard(program, pattern)) return title;
  }
  return program;
}

std::string_view KnownPlaceTable::componentOf(const Row& row, std::string_view path) const noexcept {
  auto rest = relative(row, path).value_or(path);
  for (int i = 0; i < row.place->programAt; ++i) rest.remove_prefix(std::min(rest.find('/') + 1, rest.size()));
  return rest.substr(0, rest.find('/'));
}

const KnownPlaceTable::Row* KnownPlaceTable::trashRow() const noexcept {
  const auto row = std::ranges::find(m_rows, ScanCategory::trash, &Row::category);
  return row == m_rows.end() ? nullptr : &*row;
}

const KnownPlaceTable::Row* KnownPlaceTable::rowOf(std::string_view path) const noexcept {
  if (m_profile.isInOtherTrash(path)) return trashRow();
  bool mayHoldEarlier = false;
  for (const auto& row : m_rows) {
    const auto found = fit(row, path);
    if (found == PathPattern::Fit::below) return nullptr;
    if (found == PathPattern::Fit::exact) return mayHoldEarlier && row.place->pattern.ends_with("*") ? nullptr : &row;
    if (found == PathPattern::Fit::above) mayHoldEarlier = true;
  }
  return nullptr;
}

}  // namespace orvane
