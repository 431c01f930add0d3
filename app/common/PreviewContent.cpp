#include "app/common/PreviewContent.h"

#include "app/common/ArchiveListing.h"
#include "app/common/PageDrawing.h"
#include "app/common/Pictures.h"
#include "app/common/Text.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathAccess.h"

#include <fcntl.h>
#include <unistd.h>

#include <QStringDecoder>

#include <algorithm>
#include <string>
#include <system_error>
#include <vector>

namespace orvane {
namespace {

constexpr std::size_t maxText = 64UL * 1024;  // bytes
constexpr std::size_t maxEntries = 500;
// Names that are read of a folder before they are sorted.
constexpr std::size_t maxNamesRead = 20'000;

using Kind = PreviewContent::Kind;

void listFolder(const FileUrl& folder, PreviewContent& content) {
  content.kind = Kind::folder;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::refuse);
  if (!reader) return;
  std::vector<std::string> names;
  while (const auto entry = reader->next()) {
    content.isCut = names.size() == maxNamesRead;
    if (content.isCut) break;
    names.emplace_back(entry->name);
  }
  std::ranges::sort(names);
  content.isCut = content.isCut || names.size() > maxEntries;
  if (names.size() > maxEntries) names.resize(maxEntries);
  for (const auto& name : names) content.entries += shownName(name);
}

bool isControl(char sign) {
  constexpr std::string_view inTexts = "\t\n\r\f\x1b";
  return static_cast<unsigned char>(sign) < 0x20 && inTexts.find(sign) == std::string_view::npos;
}

// Absent for bytes that are no text. The last character of a part may be cut through.
std::optional<QString> decodedText(const std::string& bytes) {
  if (std::ranges::any_of(bytes, isControl)) return {};
  QStringDecoder decode(QStringDecoder::Utf8);
  QString text = decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
  // A whole file that ends within a character is no UTF-8.
  if (bytes.size() < maxText) text += QString(decode(QByteArrayView("\n", 1))).chopped(1);
  return decode.hasError() ? QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size())) : text;
}

std::string beginningOf(int file) {
  std::string bytes(maxText, '\0');
  std::size_t length = 0;
  while (length < bytes.size()) {
    const auto count = readSome(file, std::span(bytes).subspan(length));
    if (count == 0) break;
    length += count;
  }
  bytes.resize(length);
  return bytes;
}

void readRegularFile(const FileUrl& item, const std::stop_token& stop, PreviewContent& content) {
  if (isPictureName(item) || isPageName(item)) {
    content.kind = Kind::picture;
    return;
  }
  const auto file = openRegularFile(item.path());
  if (auto listing = listArchive(file.get(), maxEntries, stop)) {
    content.kind = Kind::archive;
    content.isCut = listing->isCut;
    for (const auto& name : listing->names) content.entries += shownName(name);
    return;
  }
  if (lseek(file.get(), 0, SEEK_SET) != 0) return;
  const auto bytes = beginningOf(file.get());
  const auto text = decodedText(bytes);
  if (!text || bytes.empty()) return;
  content.kind = Kind::text;
  content.text = *text;
  content.isCut = content.bytes.value_or(0) > static_cast<std::int64_t>(bytes.size());
}

}  // namespace

PreviewContent readPreview(const FileUrl& item, const std::stop_token& stop) {
  PreviewContent content;
  const auto status = readPathStatus(item.path());
  if (!status) {
    content.kind = Kind::gone;
    return content;
  }
  content.modified = status->modified.date();
  if (status->type == FileType::directory) listFolder(item, content);
  if (status->type != FileType::regular) return content;
  content.bytes = status->size;
  try {
    readRegularFile(item, stop, content);
  } catch (const std::system_error&) {
    content.kind = Kind::none;
  }
  return content;
}

}  // namespace orvane
