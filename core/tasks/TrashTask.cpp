#include "core/tasks/TrashTask.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"
#include "core/safety/records/TrashError.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/walk/FolderSize.h"
#include "core/tasks/ItemAt.h"
#include "core/tasks/TaskServices.h"

#include <cerrno>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace orvane {
namespace {

bool liesInOneOf(const std::unordered_set<std::string_view>& places, std::string_view path) {
  while (path.size() > 1) {
    path = parentPath(path);
    if (places.contains(path)) return true;
  }
  return false;
}

FileItem bareItem(const FileUrl& place) {
  FileItem::Fields fields;
  fields.url = place;
  return FileItem(std::move(fields));
}

}  // namespace

Proposal proposeTrash(const TaskServices& services, std::span<const FileUrl> places, const Boundary& boundary) {
  ProposalBuilder builder(TaskKind::trash, boundary, ReferenceClock::now());
  builder.setSubject(Json{{"places", jsonFromUrls(places)}});
  std::unordered_set<std::string_view> taken;
  const auto lock = [&](const FileUrl& place, std::string refusal) {
    builder.add(bareItem(place), {Choice::locked, Lock::refused, builder.addGroup({.refusal = std::move(refusal)})});
  };
  for (const auto& place : places) {
    if (services.validator.isPathAllowed(place, boundary)) taken.insert(place.path());
  }
  for (const auto& place : places) {
    if (auto refusal = services.validator.refusalText(place, boundary); !refusal.empty()) {
      lock(place, std::move(refusal));
      continue;
    }
    auto item = itemAt(services, place, WholeFolder::measured);
    if (!item) {
      lock(place, errno == ENOENT ? TrashError(TrashError::FileNotFound{place.path()}).what() : errorText(errno));
    } else if (!liesInOneOf(taken, place.path())) {
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
