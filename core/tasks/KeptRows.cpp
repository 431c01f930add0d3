#include "core/tasks/KeptRows.h"

#include "core/safety/access/KeepList.h"
#include "core/scanning/records/FileItem.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

namespace orvane {

KeptRows::KeptRows(const TaskServices& services) : m_places(services.keepList.places()) {}

bool KeptRows::hold(const FileUrl& item, std::int64_t bytes) {
  if (m_places.keeperOf(item) == nullptr) return false;
  m_sum.add(bytes);
  return true;
}

bool KeptRows::hold(const FileItem& item) {
  return hold(item.url(), item.fileSize());
}

void KeptRows::noteIn(ProposalBuilder& builder) const {
  if (m_sum.count > 0) builder.note(RowsKept{m_sum});
}

std::string keptReason(KeptPlaces& places, const FileUrl& item) {
  const auto* keeper = places.keeperOf(item);
  if (keeper == nullptr) return {};
  return fmt::format("'{}' is on the keep list. To take it off: orvanectl keep remove '{}'", item.path(), *keeper);
}

}  // namespace orvane
