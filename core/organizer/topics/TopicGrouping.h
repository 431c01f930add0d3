#pragma once

#include "core/base/files/FileUrl.h"
#include "core/organizer/records/OrganizationCategoryGroup.h"

#include <stop_token>
#include <vector>

namespace orvane {

class TopicCategorizing;

// A proposal with its documents by topic instead of by kind: a topic becomes a folder beside the kinds in "Documents".
// What has no topic keeps its category, and so does everything that is no document. Only names are looked at; a name
// that several files have is asked about once. The order of the groups is that of the engine, and no two proposals
// share a target. Reads the folders under `destinationRoot`, changes nothing.
[[nodiscard]] std::vector<OrganizationCategoryGroup> groupedByTopic(std::vector<OrganizationCategoryGroup> groups,
                                                                    const FileUrl& destinationRoot,
                                                                    TopicCategorizing& categorizer,
                                                                    const std::stop_token& stop = {});

}  // namespace orvane
