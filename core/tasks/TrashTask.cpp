#include "core/tasks/TrashTask.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathSet.h"
#include "core/base/text/Json.h"
#include "core/safety/access/KeepList.h"
#include "core/safety/records/TrashError.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/walk/FolderSize.h"
#include "core/tasks/ItemAt.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/TaskServices.h"

#include <cerrno>
#include <string>
#include <utility>

namespace orvane {
namespace {

FileItem refusedItem(const FileUrl& place) {
  FileItem::Fields fields;
  fields.url = place;
  return FileItem(std::move(fields));
}

}  // namespace

Proposal proposeTrash(const TaskServices& services, std::span<const FileUrl> places, const Boundary& boundary) {
  ProposalBuilder builder(TaskKind::trash, boundary, ReferenceClock::now());
  builder.setSubject(Json{{"places", jsonFromUrls(places)}});
  PathSet taken;
  const auto lock = [&](const FileUrl& place, std::string refusal) {
    builder.add(refusedItem(place), {Choice::locked, Lock::refused, builder.addGroup({.refusal = std::move(refusal)})});
  };
  auto kept = services.keepList.places();
  const auto refusalOf = [&](const FileUrl& place) {
    auto refusal = services.validator.refusalText(place, boundary);
    return refusal.empty() ? keptReason(kept, place) : refusal;
  };
  for (const auto& place : places) {
    if (refusalOf(place).empty()) taken.insert(place.path());
  }
  for (const auto& place : places) {
    if (auto refusal = refusalOf(place); !refusal.empty()) {
      lock(place, std::move(refusal));
      continue;
    }
    auto item = itemAt(services, place, WholeFolder::measured);
    if (!item) {
      lock(place, errno == ENOENT ? TrashError(TrashError::FileNotFound{place.path()}).what() : errorText(errno));
    } else if (!taken.holds(place.path())) {
      builder.add(*std::move(item), {Choice::selected});
    }
  }
  return builder.take();
}

std::optional<Proposal> reproposeTrash(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                       Date /*countedTo*/, const TaskMonitor& /*monitor*/) {
  return proposeTrash(services, urlsAt(subject, "places"), boundary);
}

}  // namespace orvane
