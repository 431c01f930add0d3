#include "app/common/NoticeTexts.h"

#include "app/common/Format.h"
#include "app/common/Text.h"
#include "core/base/files/FileUrl.h"

#include <QString>

#include <variant>

namespace orvane {
namespace {

QString textOf(const FolderLeftOut& leftOut, const FileUrl& home) {
  const auto folder = shownPath(leftOut.folder.path(), home);
  switch (leftOut.why) {
    case FolderLeftOut::Why::missing:
      return QStringLiteral("%1: %2").arg(folder, textFrom(leftOut.detail));
    case FolderLeftOut::Why::refused:
      return shownName(leftOut.detail);
    case FolderLeftOut::Why::notGranted:
    case FolderLeftOut::Why::listedOnly:
      break;
  }
  return localizedText("agent.folder_not_granted").arg(folder);
}

struct NoticeText {
  const FileUrl& home;

  QString operator()(const FolderLeftOut& leftOut) const { return textOf(leftOut, home); }
  QString operator()(const RowsKept& kept) const { return keptText(kept.rows); }
  QString operator()(const RowsInPlace& inPlace) const {
    if (inPlace.rule.empty()) return countedText("organize.in_place", inPlace.rows.count);
    return countedText("rules.in_place", inPlace.rows.count).arg(shownName(inPlace.rule));
  }
  QString operator()(const RowsKeptByLabel& kept) const {
    if (kept.rule.empty()) return {};
    return countedText("rules.kept_by_label", kept.rows.count).arg(shownName(kept.rule));
  }
  QString operator()(const RuleRefused& refused) const {
    return localizedText("rules.left_out").arg(shownName(refused.rule), localizedText(refused.key));
  }
  QString operator()(const RowsNotProposed& left) const {
    if (left.why == RowsNotProposed::Why::unfinished) return countedText("organize.unfinished", left.rows.count);
    return countedText("organize.not_movable", left.rows.count) + u' ' + shownName(left.detail);
  }
  QString operator()(const RowsReturned& returned) const { return countedText("tidy.returned", returned.rows.count); }
  QString operator()(const ProjectTakenApart& project) const {
    return localizedText("organize.project").arg(shownPath(project.folder.path(), home));
  }
  QString operator()(const LinksToRows& links) const { return countedText("organize.links", links.count); }
  template <typename Other>
  QString operator()(const Other& /*notice*/) const {
    return {};
  }
};

}  // namespace

QString keptText(const RowSum& rows) {
  return countedText("keep.held_back", rows.count).arg(Format::bytes(static_cast<double>(rows.bytes)));
}

QString movingSums(const RowSum& toTrash, const RowSum& toFolders) {
  QStringList lines;
  const auto tell = [&lines](const char* key, const RowSum& sum) {
    if (sum.count > 0) lines += countedText(key, sum.count).arg(Format::bytes(static_cast<double>(sum.bytes)));
  };
  tell("consent.to_trash", toTrash);
  tell("consent.to_folders", toFolders);
  return lines.join(u'\n');
}

QStringList noticeTexts(const Notices& notices, const FileUrl& home) {
  QStringList result;
  for (const auto& notice : notices) {
    if (const auto text = std::visit(NoticeText{home}, notice); !text.isEmpty()) result += text;
  }
  return result;
}

QStringList leftOutFolders(const Notices& notices, const FileUrl& home) {
  QStringList result;
  for (const auto& notice : notices) {
    if (const auto* leftOut = std::get_if<FolderLeftOut>(&notice)) result += textOf(*leftOut, home);
  }
  return result;
}

}  // namespace orvane
