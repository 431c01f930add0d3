#include "core/tasks/ItemAt.h"

#include "core/base/files/PathText.h"
#include "core/organizer/categories/FolderClassifier.h"
#include "core/organizer/records/CloudFolderDetector.h"
#include "core/platform/FileStatusReader.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/records/RiskEvaluator.h"
#include "core/scanning/walk/FolderSize.h"
#include "core/tasks/TaskServices.h"

#include <fcntl.h>

#include <utility>

namespace orvane {

std::optional<FileItem> itemAt(const TaskServices& services, const FileUrl& place, WholeFolder size) {
  const auto status = services.statusReader.read(AT_FDCWD, place.path().c_str());
  if (!status) return std::nullopt;
  const bool isFolder = status->type == FileType::directory;
  FileItem::Fields fields;
  fields.url = place;
  fields.identity = ItemIdentity::of(*status);
  fields.fileSize = status->size;
  fields.createdDate = status->created ? status->created->date() : ReferenceClock::now();
  fields.lastOpenedDate = status->accessed.date();
  // A folder's own size says nothing.
  const std::int64_t ownSize = isFolder ? 0 : status->size;
  const auto& profile = isFolder ? SystemProfile::none() : services.validator.protectedLocations().profile();
  const NamedFiles namedFiles(profile);
  const FolderClassifier classifier(joinPath(parentPath(place.path()), ""), namedFiles);
  fields.category = classifier.classify(place.lastPathComponent(), ownSize);
  fields.riskLabel = RiskEvaluator::evaluate(fields.category, place, ownSize, fields.createdDate);
  if (const auto* row = services.validator.knownPlaces().rowOf(place.path())) {
    fields.category = row->category;
    fields.riskLabel = row->label;
  }
  fields.isCloudPlaceholder = CloudFolderDetector::isDatalessCloudPlaceholder(place);
  if (isFolder) {
    fields.fileSize = size == WholeFolder::measured ? FolderSize::of(place.path(), FolderSize::Extent::everything) : 0;
  }
  return FileItem(std::move(fields));
}

}  // namespace orvane
