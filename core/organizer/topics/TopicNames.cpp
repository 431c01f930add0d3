#include "core/organizer/topics/TopicNames.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/organizer/categories/GeneratedFolders.h"

#include <fcntl.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {
namespace {

// Categories that are topics as well.
constexpr std::array<std::string_view, 2> topicCategories{"Archives", "Installers"};

bool canNameFolder(std::string_view topic) noexcept {
  return !topic.empty() && topic.size() <= maxNameBytes && !topic.starts_with('.') &&
         topic.find('/') == std::string_view::npos && topic.find("..") == std::string_view::npos;
}

bool separates(UChar32 character) {
  switch (u_charType(character)) {
    case U_CONTROL_CHAR:
    case U_FORMAT_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
      return true;
    default:
      return character == ' ' || character == '/' || character == ':' || character == '\\';
  }
}

}  // namespace

std::optional<std::string> TopicNames::sanitize(std::string_view text) {
  const auto unicode = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
  icu::UnicodeString spaced;
  bool isAfterSeparator = false;
  for (int32_t i = 0; i < unicode.length(); i = unicode.moveIndex32(i, 1)) {
    const auto character = unicode.char32At(i);
    if (separates(character)) {
      isAfterSeparator = true;
      continue;
    }
    if (isAfterSeparator && !spaced.isEmpty()) spaced.append(u' ');
    isAfterSeparator = false;
    spaced.append(character);
  }
  std::string name;
  spaced.toUTF8String(name);
  const auto first = name.find_first_not_of(". ");
  if (first == std::string::npos) return std::nullopt;
  name = name.substr(first, name.find_last_not_of(". ") - first + 1);
  if (perceivedCharacterCount(name) > maxNameLength) return std::nullopt;
  return name;
}

std::optional<std::string> TopicNames::folderName(std::string_view topic) {
  if (!canNameFolder(topic) || isGeneratedFolder(topic, {})) return std::nullopt;
  const auto folded = lowercased(topic);
  const auto isSame = [&](std::string_view name) { return lowercased(name) == folded; };
  if (const auto found = std::ranges::find_if(topicCategories, isSame); found != topicCategories.end()) {
    return std::string(*found);
  }
  if (std::ranges::any_of(reservedTopLevelCategories, isSame) || std::ranges::any_of(generatedFolderNames, isSame)) {
    return std::nullopt;
  }
  return std::string(topic);
}

std::map<std::string, std::string> TopicNames::foldersOf(const std::map<std::string, std::string>& topics,
                                                         const std::set<std::string>& existing) {
  std::map<std::string, std::string> spellings;
  for (const auto& name : existing) spellings.emplace(lowercased(name), name);
  std::map<std::string, std::string> result;
  for (const auto& [item, topic] : topics) {
    if (auto name = folderName(topic)) {
      result.emplace(item, spellings.try_emplace(lowercased(*name), std::move(*name)).first->second);
    }
  }
  return result;
}

std::set<std::string> TopicNames::foldersBelow(const FileUrl& parent,
                                               const std::function<bool(const std::string&)>& admits) {
  std::set<std::string> topics;
  auto reader = DirectoryReader::open(AT_FDCWD, parent.path().c_str(), DirectoryReader::Links::refuse);
  while (const auto entry = reader ? reader->next() : std::nullopt) {
    if (entry->type != FileType::directory && entry->type != FileType::unknown) continue;
    std::string name(entry->name);
    if (isValidUtf8(name) && canNameFolder(name) && admits(name)) topics.insert(std::move(name));
  }
  return topics;
}

}  // namespace orvane
