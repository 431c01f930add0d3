#pragma once

#include "core/safety/access/KeptPlaces.h"
#include "core/tasks/Notice.h"

#include <cstdint>
#include <string>

namespace orvane {

class FileItem;
class ProposalBuilder;
struct TaskServices;

// Tells which items the user's keep list holds back, and counts them. Every task asks it for each row that it would
// make.
class KeptRows {
 public:
  // As the list is now. Throws std::runtime_error where it cannot be read.
  explicit KeptRows(const TaskServices& services);

  // Whether an item is on the list; counted when it is.
  [[nodiscard]] bool hold(const FileUrl& item, std::int64_t bytes);
  [[nodiscard]] bool hold(const FileItem& item);

  [[nodiscard]] const RowSum& sum() const noexcept { return m_sum; }
  // Says what was held back, if anything was.
  void noteIn(ProposalBuilder& builder) const;

 private:
  KeptPlaces m_places;
  RowSum m_sum;
};

// Why a kept item is not taken: which pattern keeps it, and what takes it off the list. Empty where none does.
[[nodiscard]] std::string keptReason(KeptPlaces& places, const FileUrl& item);

}  // namespace orvane
