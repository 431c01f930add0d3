#include "app/shell/LauncherEntry.h"

#include "app/common/RunModel.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>

#include <utility>

namespace orvane {
namespace {

const auto launcherPath = QStringLiteral("/com/canonical/unity/launcherentry/1");
const auto launcherInterface = QStringLiteral("com.canonical.Unity.LauncherEntry");
const auto entryUri = QStringLiteral("application://orvane.desktop");

}  // namespace

LauncherEntry::LauncherEntry(std::vector<RunModel*> models, QObject* parent)
    : QObject(parent), m_models(std::move(models)) {
  for (auto* model : m_models) {
    connect(model, &RunModel::workChanged, this, &LauncherEntry::follow);
    connect(model, &RunModel::progressChanged, this, &LauncherEntry::follow);
  }
  connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
    if (state == Qt::ApplicationActive) setUrgent(false);
  });
}

void LauncherEntry::follow() {
  std::optional<int> percent;
  for (const auto* model : m_models) {
    if (!model->isWorking()) continue;
    const auto total = model->progressTotal();
    percent = total > 0 ? static_cast<int>(100 * model->progressDone() / total) : 0;
  }
  if (percent == m_percent) return;
  m_percent = percent;
  send({{QStringLiteral("progress"), percent.value_or(0) / 100.0},
        {QStringLiteral("progress-visible"), percent.has_value()}});
  if (!percent) setUrgent(QGuiApplication::applicationState() != Qt::ApplicationActive);
}

void LauncherEntry::setUrgent(bool isUrgent) {
  if (std::exchange(m_isUrgent, isUrgent) != isUrgent) send({{QStringLiteral("urgent"), isUrgent}});
}

void LauncherEntry::send(const QVariantMap& properties) {
  auto signal = QDBusMessage::createSignal(launcherPath, launcherInterface, QStringLiteral("Update"));
  signal << entryUri << properties;
  QDBusConnection::sessionBus().send(signal);
}

}  // namespace orvane
