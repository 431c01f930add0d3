#include "app/shell/Backdrop.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QQuickWindow>

#include <algorithm>
#include <vector>

namespace orvane {
namespace {

void addControlsIn(const QQuickItem& item, std::vector<QAccessibleInterface*>& controls) {
  for (auto* child : item.childItems()) {
    if (auto* control = QAccessible::queryAccessibleInterface(child)) {
      controls.push_back(control);
    } else {
      addControlsIn(*child, controls);
    }
  }
}

class BackdropInterface : public QAccessibleObject {
 public:
  explicit BackdropInterface(Backdrop* backdrop) : QAccessibleObject(backdrop) {}

  [[nodiscard]] QWindow* window() const override { return quickWindow(); }
  [[nodiscard]] QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(window());
  }
  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    const auto all = controls();
    return index < 0 || index >= static_cast<int>(all.size()) ? nullptr : all[static_cast<std::size_t>(index)];
  }
  [[nodiscard]] int childCount() const override { return static_cast<int>(controls().size()); }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto all = controls();
    const auto found = std::ranges::find_if(all, [&](const auto* one) { return one->object() == child->object(); });
    return found == all.end() ? -1 : static_cast<int>(found - all.begin());
  }
  [[nodiscard]] QAccessibleInterface* focusChild() const override {
    auto* item = quickWindow() == nullptr ? nullptr : quickWindow()->activeFocusItem();
    return item == nullptr ? nullptr : QAccessible::queryAccessibleInterface(item);
  }
  [[nodiscard]] QString text(QAccessible::Text /*kind*/) const override { return {}; }
  [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Pane; }
  [[nodiscard]] QAccessible::State state() const override { return {}; }
  [[nodiscard]] QRect rect() const override {
    if (backdrop() == nullptr) return {};
    const QSizeF size(backdrop()->width(), backdrop()->height());
    return QRectF(backdrop()->mapToGlobal(QPointF()), size).toRect();
  }

 private:
  // Gone once the item is: an interface may be asked later than that.
  [[nodiscard]] Backdrop* backdrop() const { return static_cast<Backdrop*>(object()); }
  [[nodiscard]] QQuickWindow* quickWindow() const { return backdrop() == nullptr ? nullptr : backdrop()->window(); }
  [[nodiscard]] std::vector<QAccessibleInterface*> controls() const {
    std::vector<QAccessibleInterface*> result;
    if (backdrop() != nullptr && !backdrop()->isCovered()) addControlsIn(*backdrop(), result);
    return result;
  }
};

QAccessibleInterface* interfaceFor(const QString& /*key*/, QObject* object) {
  auto* backdrop = qobject_cast<Backdrop*>(object);
  return backdrop == nullptr ? nullptr : new BackdropInterface(backdrop);
}

}  // namespace

Backdrop::Backdrop(QQuickItem* parent) : QQuickItem(parent) {
  // The same factory twice is one.
  QAccessible::installFactory(interfaceFor);
}

// The library keeps popups in a layer of its own over the window; each of their items belongs to its popup.
bool Backdrop::isCovered() const {
  if (window() == nullptr) return false;
  const auto layers = window()->contentItem()->childItems();
  const auto layer = std::ranges::find_if(layers, [](const auto* item) { return item->inherits("QQuickOverlay"); });
  if (layer == layers.end()) return false;
  const auto popups = (*layer)->childItems();
  return std::ranges::any_of(popups, [](const auto* item) {
    const auto* popup = item->parent();
    return popup != nullptr && item->isVisible() && popup->inherits("QQuickPopup") && popup->property("modal").toBool();
  });
}

}  // namespace orvane
