#include "core/scanning/records/ScanEventText.h"

#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace orvane {
namespace {

// Whether a text stands in JSON as it is.
bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < '\x7f' && c != '"' && c != '\\'; });
}

void appendString(std::string& text, std::string_view value) {
  if (!isPlain(value)) {
    text += jsonText(Json(value));
    return;
  }
  text += '"';
  text += value;
  text += '"';
}

template <typename... Values>
void append(std::string& text, fmt::format_string<Values...> format, Values&&... values) {
  fmt::format_to(std::back_inserter(text), format, std::forward<Values>(values)...);
}

void appendDate(std::string& text, std::string_view key, Date date) {
  // fmt writes the shortest text that reads back to the same bits.
  append(text, ",\"{}\":{}", key, referenceSeconds(date));
}

void appendItem(std::string& text, const FileItem& item) {
  append(text, "{{\"id\":\"{}\",\"url\":\"{}\",\"relativePath\":", item.id().toString(), item.url().absoluteString());
  appendString(text, item.relativePath());
  append(text, ",\"fileSize\":{}", item.fileSize());
  appendDate(text, "createdDate", item.createdDate());
  appendDate(text, "lastModifiedDate", item.lastModifiedDate());
  if (const auto opened = item.lastOpenedDate()) appendDate(text, "lastOpenedDate", *opened);
  append(text, ",\"category\":\"{}\",\"riskLabel\":\"{}\",\"isSelected\":{},\"isCloudPlaceholder\":{}}}",
         rawValue(item.category()), rawValue(item.riskLabel()), item.isSelected(), item.isCloudPlaceholder());
}

struct EventWriter {
  std::string& text;

  void operator()(const ScanProgress& progress) const {
    append(text,
           "{{\"event\":\"progress\",\"itemsScanned\":{},\"bytesFound\":{},\"currentPath\":", progress.itemsScanned,
           progress.bytesFound);
    appendString(text, progress.currentPath);
    text += "}\n";
  }
  void operator()(const FileItem& item) const {
    text += R"({"event":"itemDiscovered","item":)";
    appendItem(text, item);
    text += "}\n";
  }
  void operator()(const ScanCompleted& completed) const {
    append(text, "{{\"event\":\"completed\",\"totalItems\":{},\"totalBytes\":{}}}\n", completed.totalItems,
           completed.totalBytes);
  }
  void operator()(const ScanCancelled&) const { text += "{\"event\":\"cancelled\"}\n"; }
};

}  // namespace

void appendScanEvent(std::string& text, const ScanEvent& event) {
  std::visit(EventWriter{text}, event);
}

}  // namespace orvane
