#include "core/organizer/topics/OnDeviceTopicCategorizer.h"

#include "core/base/text/UnicodeText.h"
#include "core/organizer/topics/TopicNames.h"
#include "core/organizer/topics/TopicResponseParser.h"
#include "core/platform/TopicModel.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <vector>

namespace orvane {

constexpr std::string_view OnDeviceTopicCategorizer::instructions =
    "You organize a person's Mac files into topic folders, like a tidy filing cabinet.\n"
    "Given file and folder names, choose a short topic folder for each one based on what the name suggests,\n"
    "for example Tax Documents, Travel, Invoices, Work Projects, Photos, Installers, Receipts, School.\n"
    "Folder names are Title Case, one to three words. Reuse an existing folder whenever one fits,\n"
    "and keep the number of distinct folders small.\n"
    "Reply with only a JSON object mapping each item name, copied exactly, to its folder name.";

std::string OnDeviceTopicCategorizer::prompt(std::span<const std::string> itemNames,
                                             const std::set<std::string>& existingTopics) {
  std::string text = "Existing folders: ";
  if (existingTopics.empty()) text += "none yet";
  std::size_t count = 0;
  for (const auto& topic : existingTopics) {
    if (count == maxExistingTopics) break;
    if (count > 0) text += ", ";
    text += topic;
    ++count;
  }
  text += "\n\nItems:\n";
  for (const auto& name : itemNames) {
    if (&name != itemNames.data()) text += '\n';
    text += "- " + name;
  }
  return text;
}

std::map<std::string, std::string> OnDeviceTopicCategorizer::topics(std::span<const std::string> itemNames,
                                                                    const std::set<std::string>& existingTopics,
                                                                    const std::stop_token& stop) {
  std::vector<std::string> names;
  std::copy_if(itemNames.begin(), itemNames.end(), std::back_inserter(names), isValidUtf8);
  auto known = existingTopics;
  std::map<std::string, std::string> result;
  for (std::size_t start = 0; start < names.size() && !stop.stop_requested(); start += batchSize) {
    const auto batch = std::span<const std::string>(names).subspan(start, std::min(batchSize, names.size() - start));
    try {
      const auto reply = m_model.respond(std::string(instructions), prompt(batch, known), stop);
      for (auto& [name, topic] : TopicResponseParser::parse(reply, {batch.begin(), batch.end()})) {
        // A topic that cannot name a folder is not offered again.
        if (auto folder = TopicNames::folderName(topic)) known.insert(*std::move(folder));
        result.insert_or_assign(name, std::move(topic));
      }
    } catch (const std::exception&) {
      // The items of this batch keep the organizer's own categories.
    }
  }
  return result;
}

}  // namespace orvane
