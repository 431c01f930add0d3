#include "core/tasks/CategoryGroups.h"

#include "core/safety/rules/PathValidator.h"

#include <utility>

namespace orvane {
namespace {

// Without a category of the scan or a label: the organizer moves items whatever they are.
FileItem itemOf(const ProposedMove& move) {
  FileItem::Fields fields;
  fields.id = move.id;
  fields.url = move.originalURL;
  const auto& path = move.originalURL.path();
  if (path.ends_with(move.sourceRelativePath)) {
    fields.relativeStart = static_cast<std::uint32_t>(path.size() - move.sourceRelativePath.size());
  } else {
    fields.relativePath = move.sourceRelativePath;
  }
  fields.fileSize = move.fileSize;
  fields.identity = move.identity;
  if (move.identity) fields.createdDate = move.identity->modified.date();
  return FileItem(std::move(fields));
}

}  // namespace

RowMark markOf(const ProposedMove& move, std::uint32_t group, bool isRefused) {
  if (isRefused) return {Choice::locked, Lock::refused, group};
  if (move.targetURL == move.originalURL) return {Choice::locked, Lock::inPlace, group};
  return {move.isSelected ? Choice::selected : Choice::unselected, Lock::none, group};
}

std::string newNameOf(const ProposedMove& move) {
  const auto name = move.targetURL.lastPathComponent();
  return name == move.originalURL.lastPathComponent() ? std::string() : std::string(name);
}

void addCategoryGroup(ProposalBuilder& builder, const OrganizationCategoryGroup& group, const PathValidator& validator,
                      const Boundary& boundary) {
  auto refusal = validator.refusalText(group.destinationFolder, boundary);
  const bool isRefused = !refusal.empty();
  const auto index = builder.addGroup({.id = group.id,
                                       .name = group.name,
                                       .destinationFolder = group.destinationFolder,
                                       .refusal = std::move(refusal)});
  for (const auto& move : group.moves) builder.add(itemOf(move), markOf(move, index, isRefused), newNameOf(move));
}

std::vector<GroupRows> rowsByGroup(const Proposal& proposal) {
  std::vector<GroupRows> result(proposal.groups().size());
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    if (row.group == nullptr) return;
    auto& rows = result[static_cast<std::size_t>(row.group - proposal.groups().data())];
    if (rows.count++ == 0) rows.first = index;
  });
  return result;
}

std::vector<OrganizationCategoryGroup> groupsOf(const Proposal& proposal) {
  std::vector<OrganizationCategoryGroup> result;
  const auto rows = rowsByGroup(proposal);
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const auto& group = proposal.groups()[at];
    const auto folder = group.destinationFolder.value_or(FileUrl());
    auto& record = result.emplace_back(OrganizationCategoryGroup{group.id, group.name, folder, {}});
    record.moves.reserve(rows[at].count);
    for (std::size_t index = rows[at].first; index < rows[at].first + rows[at].count; ++index) {
      const auto row = proposal.row(index);
      auto& move = record.moves.emplace_back();
      move.id = row.item.id();
      move.originalURL = row.item.url();
      const auto name = row.newName.empty() ? row.item.url().lastPathComponent() : row.newName;
      move.targetURL = row.lock == Lock::inPlace ? move.originalURL : folder.appendingPathComponent(name);
      move.categoryName = group.name;
      move.fileSize = row.item.fileSize();
      move.isSelected = row.choice == Choice::selected;
      move.isDirectory = row.item.isFolder();
      move.sourceRelativePath = row.item.relativePath();
      move.identity = row.item.identity();
    }
  }
  return result;
}

}  // namespace orvane
