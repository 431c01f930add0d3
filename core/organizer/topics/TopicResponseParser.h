#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace orvane {

// Reads a language model's reply, which may come with prose or code fences around its JSON object.
class TopicResponseParser {
 public:
  // Clean topic by item name. Names that were not asked about and topics that are no names are left out; a reply
  // without an object yields nothing.
  [[nodiscard]] static std::map<std::string, std::string> parse(std::string_view reply,
                                                                const std::set<std::string>& allowedNames);
};

}  // namespace orvane
