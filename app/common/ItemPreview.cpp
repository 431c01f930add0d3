#include "app/common/ItemPreview.h"

#include "app/common/PictureProvider.h"
#include "app/common/Places.h"
#include "app/common/Text.h"

namespace orvane {

ItemPreview::~ItemPreview() {
  m_stop.request_stop();
}

bool ItemPreview::look(const QString& place) {
  const auto item = placeFrom(place);
  if (!item) return false;
  m_stop.request_stop();
  m_stop = {};
  m_item = item;
  m_content = {};
  m_isReading = true;
  Q_EMIT changed();
  m_queue.post([this, item = *item, stop = m_stop.get_token()](const std::stop_token&) {
    if (stop.stop_requested()) return;
    auto content = readPreview(item, stop);
    callOn(this, [this, stop, content = std::move(content)] {
      if (stop.stop_requested()) return;
      m_isReading = false;
      m_content = content;
      Q_EMIT changed();
    });
  });
  return true;
}

void ItemPreview::close() {
  if (!m_item) return;
  m_stop.request_stop();
  m_item.reset();
  m_isReading = false;
  m_content = {};
  Q_EMIT changed();
}

QString ItemPreview::place() const {
  return m_item ? placeText(*m_item) : QString();
}

QString ItemPreview::shownPlace() const {
  return m_item ? shownPath(m_item->path(), m_home) : QString();
}

QString ItemPreview::name() const {
  return m_item ? shownName(m_item->lastPathComponent()) : QString();
}

QString ItemPreview::picture() const {
  return m_item && m_content.kind == PreviewContent::Kind::picture ? pictureSource(previewProvider, *m_item)
                                                                   : QString();
}

double ItemPreview::modified() const {
  return milliseconds(m_content.modified);
}

QString ItemPreview::remark() const {
  if (!m_item || m_isReading) return {};
  if (m_content.isCut) return localizedText("look.cut");
  switch (m_content.kind) {
    case PreviewContent::Kind::none:
      return localizedText("look.none");
    case PreviewContent::Kind::gone:
      return localizedText("cleanup.gone_since_scan");
    case PreviewContent::Kind::folder:
      return m_content.entries.empty() ? localizedText("look.empty") : QString();
    case PreviewContent::Kind::picture:
    case PreviewContent::Kind::text:
    case PreviewContent::Kind::archive:
      break;
  }
  return {};
}

}  // namespace orvane
