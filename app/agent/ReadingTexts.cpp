#include "app/agent/ReadingTexts.h"

#include "app/common/Format.h"
#include "app/common/Text.h"

#include <cstddef>

namespace orvane {

QString becameText(const ReadEntry& entry, const FileUrl& home) {
  if (!entry.counts) return localizedText("agent.not_followed");
  if (entry.folder) return shownPath(*entry.folder, home);
  if (entry.ageDays) return countedText("agent.days", *entry.ageDays);
  if (entry.sizeBytes) return Format::bytes(static_cast<double>(*entry.sizeBytes));
  if (entry.program) return shownName(*entry.program);
  switch (entry.meaning) {
    case WordMeaning::screenshots:
      return localizedText("category.screenshots");
    case WordMeaning::installers:
      return localizedText("category.oldDownloads");
    case WordMeaning::caches:
      return localizedText("category.caches");
    case WordMeaning::logs:
      return localizedText("category.logs");
    case WordMeaning::organizing:
      return localizedText("agent.to_folders");
    case WordMeaning::removal:
      return localizedText("agent.to_trash");
    default:
      return {};
  }
}

QString assumedText(const ReadEntry& entry, const FileUrl& home) {
  switch (entry.meaning) {
    case WordMeaning::age:
      return localizedText("agent.no_age_named").arg(countedText("count.days", entry.ageDays.value_or(0)));
    case WordMeaning::size:
      return localizedText("agent.no_size_named").arg(becameText(entry, home));
    default:
      return localizedText("agent.no_folder_named").arg(becameText(entry, home));
  }
}

std::string_view doubtKey(Doubt doubt) noexcept {
  switch (doubt) {
    case Doubt::negation:
      return "agent.doubt_negation";
    case Doubt::question:
      return "agent.doubt_question";
    case Doubt::nothing:
      return "agent.doubt_nothing";
    case Doubt::path:
      return "agent.doubt_path";
    case Doubt::unknownWord:
      return "agent.doubt_word";
    case Doubt::leftAside:
      return "agent.doubt_aside";
    case Doubt::comparison:
      return "agent.doubt_comparison";
    case Doubt::noCriterion:
      return "agent.doubt_criterion";
    case Doubt::noVerb:
      return "agent.doubt_verb";
    case Doubt::program:
      return "agent.doubt_program";
    case Doubt::otherRoom:
    case Doubt::none:
      break;
  }
  return {};
}

AppNavigationItem sectionOf(Room room) noexcept {
  switch (room) {
    case Room::duplicates:
      return AppNavigationItem::Duplicates;
    case Room::apps:
      return AppNavigationItem::Apps;
    case Room::organize:
      return AppNavigationItem::Organize;
    case Room::schedule:
      return AppNavigationItem::Rules;
    case Room::history:
    case Room::trash:
      return AppNavigationItem::History;
    case Room::map:
      return AppNavigationItem::Overview;
    case Room::privacy:
      return AppNavigationItem::Privacy;
    case Room::cleanup:
      break;
  }
  return AppNavigationItem::Cleanup;
}

std::string_view titleOf(Room room) noexcept {
  return navigationRows[static_cast<std::size_t>(sectionOf(room))].titleKey;
}

}  // namespace orvane
