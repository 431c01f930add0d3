#include "platform/linux/LinuxTrashUsage.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileUrl.h"
#include "core/base/files/PathText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/uninstaller/ContentSizes.h"
#include "platform/linux/TrashInfo.h"

#include <fcntl.h>
#include <unistd.h>

#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

namespace orvane {
namespace {

constexpr std::string_view recordEnding = ".trashinfo";
constexpr std::size_t maxRecordBytes = 64 * 1024;

std::optional<Date> dateOf(int info, const std::string& name) {
  const FileDescriptor record(::openat(info, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!record) return std::nullopt;
  try {
    return trashInfoDate(readAll(record.get(), maxRecordBytes));
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

TrashUsage::Totals contentOf(const std::string& folder, const std::stop_token& stop) {
  TrashUsage::Totals totals;
  std::vector<FileUrl> items;
  const auto files = joinPath(folder, "files");
  const auto info = DirectoryReader::open(AT_FDCWD, joinPath(folder, "info").c_str(), DirectoryReader::Links::refuse);
  auto reader = DirectoryReader::open(AT_FDCWD, files.c_str(), DirectoryReader::Links::refuse);
  while (const auto entry = reader ? reader->next() : std::nullopt) {
    if (stop.stop_requested()) return totals;
    items.emplace_back(joinPath(files, entry->name));
    const auto date = info ? dateOf(info->descriptor(), std::string(entry->name).append(recordEnding)) : std::nullopt;
    if (date && (!totals.oldest || *date < *totals.oldest)) totals.oldest = date;
  }
  totals.count = std::ssize(items);
  for (const auto bytes : contentSizes(items, stop)) totals.bytes = checkedAdd(totals.bytes, bytes);
  return totals;
}

void add(TrashUsage::Totals& sum, const TrashUsage::Totals& other) {
  sum.count += other.count;
  sum.bytes = checkedAdd(sum.bytes, other.bytes);
  if (other.oldest && (!sum.oldest || *other.oldest < *sum.oldest)) sum.oldest = other.oldest;
}

}  // namespace

TrashUsage::Totals LinuxTrashUsage::read(const std::stop_token& stop) const {
  Totals totals;
  const auto [folders, unanswered] = m_trashes.folders(m_homeTrash, stop);
  totals.unansweredDisks = unanswered;
  for (const auto& folder : folders) {
    if (stop.stop_requested()) return totals;
    const auto content =
        m_trashes.answerOf<Totals>(folder, [path = folder.path, stop] { return contentOf(path, stop); });
    if (content) add(totals, *content);
    if (!content) ++totals.unansweredDisks;
  }
  return totals;
}

}  // namespace orvane
