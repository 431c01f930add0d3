#pragma once

#include "core/base/files/FileUrl.h"
#include "core/organizer/records/OrganizationCategoryGroup.h"

#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

class TopicCategorizing;

// A proposal for a folder with its documents by topic instead of by kind: a topic becomes a folder beside the kinds of
// documents. An item without a topic keeps its category, and so does everything that is no document. Only names are
// looked at; a name that several files have is asked about once. The order of the groups is that of the engine, and no
// two proposals share a target. Reads the folders under `destinationRoot`, changes nothing.
[[nodiscard]] std::vector<OrganizationCategoryGroup> groupedByTopic(std::vector<OrganizationCategoryGroup> groups,
                                                                    const FileUrl& folder,
                                                                    const FileUrl& destinationRoot,
                                                                    TopicCategorizing& categorizer,
                                                                    const std::stop_token& stop = {});

// The folders of topics below a destination that lies inside the folder that is organized.
class TopicFolders {
 public:
  TopicFolders(const FileUrl& folder, const FileUrl& destinationRoot);
  // Whether the item lies in one, by its path alone.
  [[nodiscard]] bool hold(const FileUrl& item) const;

 private:
  std::string m_parent;  // of such folders; empty where there are none
};

}  // namespace orvane
