#include "cli/text/ReadingText.h"

#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/AskTask.h"
#include "core/tasks/ReadEntries.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace orvane::cli {
namespace {

std::string ageText(std::int64_t days) {
  return fmt::format("{} {}", formatCount(days), days == 1 ? "day" : "days");
}

// The text's value for people; the plan's own words where it has none.
std::string valueOf(const ReadEntry& entry) {
  if (entry.folder) return shownPath(FileUrl(*entry.folder));
  if (entry.ageDays) return ageText(*entry.ageDays);
  if (entry.sizeBytes) return formatByteCount(*entry.sizeBytes);
  if (entry.program) return "the places of " + escapedForDisplay(*entry.program);
  switch (entry.meaning) {
    case WordMeaning::screenshots:
      return "screenshots";
    case WordMeaning::installers:
      return "installers";
    case WordMeaning::caches:
      return "caches";
    case WordMeaning::logs:
      return "logs";
    case WordMeaning::organizing:
      return "sort into folders";
    case WordMeaning::removal:
      return "to the Trash";
    default:
      return "its places";
  }
}

std::string assumedText(const ReadEntry& entry) {
  const auto value = valueOf(entry);
  switch (entry.meaning) {
    case WordMeaning::age:
      return "no age named: " + value;
    case WordMeaning::size:
      return fmt::format("no size named: {} or more", value);
    default:
      return "no folder named: " + value;
  }
}

std::string quoted(const std::string& argument) {
  return argument.find(' ') == std::string::npos ? argument : "\"" + argument + "\"";
}

}  // namespace

void printReading(Session& session, std::string_view prompt, const PlannedAnswer& answer) {
  std::string_view label = "Read:";
  const auto line = [&](const std::string& text) {
    session.out().line(fmt::format("{:<10}{}", label, text));
    label = "";
  };
  std::string unread;
  const auto entries = readEntries(prompt, answer);
  for (const auto& entry : entries) {
    const auto text = escapedForDisplay(entry.text);
    if (entry.isAssumed()) {
      line(assumedText(entry));
    } else if (entry.meaning == WordMeaning::none) {
      unread += (unread.empty() ? "" : " ") + text;
    } else if (!entry.counts) {
      line(text + " → not followed");
    } else {
      line(fmt::format("{} → {}", text, valueOf(entry)));
    }
  }
  if (!unread.empty()) line("meant nothing: " + unread);
}

void printBeside(Session& session, const PlacesBeside& beside) {
  session.out().line(fmt::format("{} of programs are a category of their own: {}. Add them with --with {}.",
                                 displayName(beside.category), formatByteCount(beside.rows.bytes),
                                 rawValue(beside.category)));
}

std::string doubtText(std::string_view prompt, const PlannedAnswer& answer) {
  const auto doubt = answer.understanding.doubt;
  std::string words;
  for (const auto& word : doubtedWords(readEntries(prompt, answer), doubt)) {
    if (!words.empty()) words += ", ";
    words += "“" + escapedForDisplay(word) + "”";
  }
  switch (doubt) {
    case Doubt::negation:
      return "it says what must not go";
    case Doubt::question:
      return "it asks or lists, and the plan acts";
    case Doubt::nothing:
      return "it names nothing that is known here";
    case Doubt::path:
      return "it names a file or a folder, and the plan takes others too";
    case Doubt::unknownWord:
      return words + " may change what is meant";
    case Doubt::leftAside:
      return "the plan does not follow all of it" + (words.empty() ? "" : ": " + words);
    case Doubt::comparison:
      return "it does not say \"older than\" or \"larger than\"";
    case Doubt::noCriterion:
      return "it takes all of a folder, and the plan only the large files";
    case Doubt::noVerb:
      return "it does not say what to do";
    case Doubt::program:
      return "it could mean the program, and the plan takes its caches";
    case Doubt::otherRoom:
    case Doubt::none:
      break;
  }
  return "another command does it";
}

std::string roomCommand(const RoomRequest& request) {
  const auto withFolder = [&](const std::string& command) {
    return request.folder.empty() ? command : command + " " + request.folder;
  };
  switch (request.room) {
    case Room::cleanup:
      return "orvanectl clean --dry-run";
    case Room::duplicates:
      return withFolder("orvanectl duplicates");
    case Room::apps:
      return request.name.empty() ? "orvanectl apps list" : "orvanectl apps uninstall " + quoted(request.name);
    case Room::organize: {
      auto command = withFolder("orvanectl organize");
      if (!request.way.empty()) command += fmt::format(" --strategy {}", request.way);
      return command;
    }
    case Room::schedule:
      return fmt::format("orvanectl schedule set {}", request.way.empty() ? "weekly" : request.way);
    case Room::history:
      return "orvanectl restore --last";
    case Room::map:
      return withFolder("orvanectl map");
    case Room::privacy:
      return "orvanectl folders list";
    case Room::trash:
      break;
  }
  return {};
}

std::string roomText(const RoomRequest& request) {
  const auto command = roomCommand(request);
  if (command.empty()) return "Nothing here empties the Trash: your file manager does";
  return fmt::format("Another command does this: {}", escapedForDisplay(command));
}

Json roomJson(const RoomRequest& request) {
  Json json = Json::object();
  const auto command = roomCommand(request);
  json["room"] = rawValue(request.room);
  json["command"] = command.empty() ? Json() : Json(command);
  return json;
}

}  // namespace orvane::cli
