#include "app/common/RowVoice.h"

#include <QAccessible>

namespace orvane {
namespace {

QQuickItem* controlIn(QQuickItem* item) {
  if (!item->isVisible()) return nullptr;
  if (QAccessible::queryAccessibleInterface(item) != nullptr) return item;
  for (auto* child : item->childItems()) {
    if (auto* control = controlIn(child)) return control;
  }
  return nullptr;
}

}  // namespace

void RowVoice::tell(QQuickItem* row) {
  if (row == nullptr || !QAccessible::isActive()) return;
  auto* control = controlIn(row);
  if (control == nullptr) return;
  QAccessibleEvent event(control, QAccessible::Focus);
  QAccessible::updateAccessibility(&event);
}

}  // namespace orvane
