#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/safety/records/Boundary.h"
#include "core/tasks/ItemList.h"
#include "core/tasks/Notice.h"
#include "core/tasks/Selection.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

enum class TaskKind : std::uint8_t { clean, trash, plan, rules, duplicates, organize, tidy, uninstall, restore };

// The case name; also the form in saved proposals.
[[nodiscard]] std::string_view rawValue(TaskKind kind) noexcept;
[[nodiscard]] std::optional<TaskKind> taskKindFromRawValue(std::string_view text) noexcept;

// Why a row cannot be chosen.
enum class Lock : std::uint8_t {
  none,
  manualLabel,  // only the user can judge it
  inTrash,      // it lies in a Trash already
  inPlace,      // it lies where it would be moved to
  listedOnly,   // its step or rule only shows it
  refused,      // its group's refusal says why
  kept,         // it is on the user's keep list, and shown because copies of it are not
  reference,    // it lies in a folder that is compared with and never touched
};

// The properties that rows share: a step of a plan with its destination, a rule, a category folder, a set of identical
// files.
struct RowGroup {
  Uuid id = Uuid::random();
  std::string name = {};
  std::optional<FileUrl> destinationFolder = {};  // the Trash when absent
  std::string checksum = {};                      // content digest of identical files
  std::string refusal = {};                       // of rows that are refused
  std::uint32_t source = 0;                       // index of the step or rule
  bool keepsOne = false;                          // one of its rows always stays where it is

  bool operator==(const RowGroup&) const = default;
};

// The part of a row that a proposal keeps beside its item.
struct RowMark {
  static constexpr std::uint32_t noGroup = UINT32_MAX;
  Choice choice = Choice::unselected;
  Lock lock = Lock::none;
  std::uint32_t group = noGroup;
};

// A row as it is shown. Refers to the proposal that it is of.
struct ProposedRow {
  const FileItem& item;  // with its identity, size, category and label
  Choice choice;
  Lock lock;
  const RowGroup* group;     // null where it is in none
  std::string_view newName;  // of the item at its destination; empty where it keeps its own

  [[nodiscard]] const FileUrl* destinationFolder() const noexcept {
    return group != nullptr && group->destinationFolder ? &*group->destinationFolder : nullptr;
  }
};

class Approval;

// The effect that a user action would have, with the state of each item at that moment. Changes nothing, and never
// changes itself; copies share the rows.
class Proposal {
 public:
  // Of no row, inside a boundary that allows nothing.
  Proposal();

  [[nodiscard]] TaskKind kind() const noexcept { return m_data->kind; }
  // The moment to which ages were counted.
  [[nodiscard]] Date countedTo() const noexcept { return m_data->countedTo; }
  [[nodiscard]] const Boundary& boundary() const noexcept { return m_data->boundary; }
  [[nodiscard]] const std::vector<RowGroup>& groups() const noexcept { return m_data->groups; }
  [[nodiscard]] const Notices& notices() const noexcept { return m_data->notices; }
  // The request to the task, in a form of the task's own: enough to propose again.
  [[nodiscard]] const Json& subject() const noexcept { return *m_data->subject; }

  [[nodiscard]] std::size_t size() const noexcept { return m_data->items.size(); }
  [[nodiscard]] bool empty() const noexcept { return size() == 0; }
  [[nodiscard]] ProposedRow row(std::size_t index) const { return rowOf(index, m_data->items.item(index)); }
  // Calls `visit(index, row)` for each in order.
  template <typename Visit>
  void forEach(Visit visit) const {
    m_data->items.forEach([&](std::size_t index, const FileItem& item) {
      visit(index, rowOf(index, item));
      return true;
    });
  }

  // As it is proposed.
  [[nodiscard]] Selection selection() const;
  // The rows that are chosen, but for those that are locked; of a group that keeps one, the first stays where all are
  // chosen. Rows beyond the selection are not chosen.
  [[nodiscard]] Approval approve(const Selection& selection) const;
  // The rows proposed as selected.
  [[nodiscard]] Approval approve() const;

 private:
  friend class ProposalBuilder;
  struct Data {
    TaskKind kind = TaskKind::clean;
    Date countedTo;
    Boundary boundary;
    ItemList items;
    std::vector<RowMark> marks;  // of each item; empty where the scan's own proposal holds
    std::vector<RowGroup> groups;
    std::unordered_map<std::uint32_t, std::string> newNames;
    Notices notices;
    std::shared_ptr<const Json> subject;
  };
  explicit Proposal(std::shared_ptr<const Data> data) : m_data(std::move(data)) {}
  [[nodiscard]] ProposedRow rowOf(std::size_t index, const FileItem& item) const;

  std::shared_ptr<const Data> m_data;
};

// The rows of a proposal that were kept. Only Proposal::approve() makes one.
class Approval {
 public:
  [[nodiscard]] const Proposal& proposal() const noexcept { return m_proposal; }
  // Indexes of rows, in order.
  [[nodiscard]] const std::vector<std::uint32_t>& rows() const noexcept { return m_rows; }
  [[nodiscard]] bool empty() const noexcept { return m_rows.empty(); }
  [[nodiscard]] const RowSum& toTrash() const noexcept { return m_toTrash; }
  [[nodiscard]] const RowSum& toFolders() const noexcept { return m_toFolders; }

 private:
  friend class Proposal;
  Approval(Proposal proposal, std::vector<std::uint32_t> rows);

  Proposal m_proposal;
  std::vector<std::uint32_t> m_rows;
  RowSum m_toTrash;
  RowSum m_toFolders;
};

// Kept rows that a cloud service keeps in sync, by service.
struct SyncedRows {
  CloudProvider provider;
  RowSum rows;
  FileUrl first;
  bool operator==(const SyncedRows&) const = default;
};
[[nodiscard]] std::vector<SyncedRows> syncedRows(const Approval& approval);
// Warnings for the user before they move, in English.
[[nodiscard]] std::string syncWarning(const SyncedRows& synced);

// How a row of a scan stands: safe items are selected, manual ones and those in a Trash cannot be.
[[nodiscard]] RowMark scannedMark(const FileItem& item) noexcept;

// Collects the rows of a proposal. For the tasks.
class ProposalBuilder {
 public:
  ProposalBuilder(TaskKind kind, Boundary boundary, Date countedTo);
  // Of another proposal with its items, for changes beside them.
  explicit ProposalBuilder(const Proposal& other) : m_data(std::make_shared<Proposal::Data>(*other.m_data)) {}

  std::uint32_t addGroup(RowGroup group);
  [[nodiscard]] RowGroup& group(std::uint32_t index) { return m_data->groups[index]; }
  // `newName` is empty for an item that keeps its name.
  void add(FileItem item, RowMark mark, std::string newName = {});
  // For a row that is there. Not where the scan's own proposal holds.
  void change(std::uint32_t row, RowMark mark, std::string newName);
  // A whole scan's items, each standing as scannedMark() has it. Not together with add().
  void setItems(ItemList items) { m_data->items = std::move(items); }
  void note(Notice notice) { m_data->notices.push_back(std::move(notice)); }
  void setSubject(Json subject);
  [[nodiscard]] Proposal take();

 private:
  void flush();

  std::shared_ptr<Proposal::Data> m_data;
  ItemPiece m_piece;
  std::size_t m_count = 0;
};

}  // namespace orvane
