#pragma once

#include "app/common/GroupedRows.h"
#include "core/base/files/FileUrl.h"
#include "core/plans/records/CleaningPlan.h"

#include <QHash>
#include <QString>
#include <QVariantList>

#include <cstdint>
#include <optional>
#include <vector>

namespace orvane {

// The files that a plan would touch, with what is chosen of them, by where they lie, at most one folder below the
// step's own, and where they would go.
class PlanMatches {
 public:
  enum Role {
    KindRole = Qt::UserRole + 1,
    NameRole,
    PlaceRole,
    ReasonRole,
    RiskRole,
    DateRole,
    BytesRole,
    CheckStateRole,
    ActionRole,
    DestinationRole,
    CountRole,
    ExpandedRole,
  };
  [[nodiscard]] static QHash<int, QByteArray> roleNames();

  PlanMatches() = default;
  PlanMatches(CleaningPlan plan, Proposal proposal, Selection selection);

  [[nodiscard]] const Proposal& proposal() const noexcept { return m_proposal; }
  [[nodiscard]] const Selection& selection() const noexcept { return m_selection; }
  [[nodiscard]] const GroupedRows& rows() const noexcept { return m_rows; }
  [[nodiscard]] std::int64_t bytes() const;

  // Of any role but the kind.
  [[nodiscard]] QVariant data(int row, int role, const FileUrl& home) const;
  // As Qt::CheckState counts; -1 where nothing can be chosen.
  [[nodiscard]] int allCheckState() const;
  // Where the chosen files would go, the fullest folder first: {text, count, bytes} of each. The last one has no text
  // and stands for the files that stay, where some do. Empty where no file moves to a folder.
  [[nodiscard]] QVariantList moves(const FileUrl& home) const;
  // How much is chosen for the Trash and how much for folders, a line each.
  [[nodiscard]] QString selectedSums() const;

  // Turns over a match, or all of a header. Absent where there is no such row; else its group.
  std::optional<std::size_t> toggle(int row);
  void selectAll(bool isSelected);
  void setExpanded(std::size_t group, bool isExpanded) { m_rows.setExpanded(group, isExpanded); }

 private:
  [[nodiscard]] QVariant headerData(const GroupedRows::Group& group, int role, const FileUrl& home) const;
  [[nodiscard]] QVariant matchData(std::uint32_t at, int role, const FileUrl& home) const;
  [[nodiscard]] QString titleOf(const GroupedRows::Group& group, const FileUrl& home) const;
  [[nodiscard]] QString remarkOf(const ProposedRow& row) const;
  void choose(const std::vector<std::uint32_t>& rows, bool isSelected);

  CleaningPlan m_plan;
  Proposal m_proposal;
  Selection m_selection;
  GroupedRows m_rows;
};

}  // namespace orvane
