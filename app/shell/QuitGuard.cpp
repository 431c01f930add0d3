#include "app/shell/QuitGuard.h"

#include "app/common/RunModel.h"
#include "app/settings/TidyModel.h"

#include <algorithm>
#include <utility>

namespace orvane {

QuitGuard::QuitGuard(std::vector<RunModel*> models, TidyModel& tidy, QObject* parent)
    : QObject(parent), m_models(std::move(models)), m_tidy(tidy) {
  for (auto* model : m_models) connect(model, &RunModel::workChanged, this, &QuitGuard::check);
  connect(&m_tidy, &TidyModel::changed, this, &QuitGuard::check);
}

bool QuitGuard::isMoving() const {
  return m_tidy.isRunning() ||
         std::any_of(m_models.begin(), m_models.end(), [](const RunModel* model) { return model->isWorking(); });
}

void QuitGuard::quit() {
  if (isMoving()) {
    Q_EMIT asked();
  } else {
    Q_EMIT finished();
  }
}

void QuitGuard::finishFirst() {
  m_isWaiting = true;
  // One that waits for the user would wait for ever.
  for (auto* model : m_models) model->resume();
  check();
}

void QuitGuard::stopFirst() {
  m_isWaiting = true;
  for (auto* model : m_models) {
    if (model->isWorking()) model->cancel();
  }
  if (m_tidy.isRunning()) m_tidy.cancel();
  check();
}

void QuitGuard::check() {
  if (!m_isWaiting || isMoving()) return;
  m_isWaiting = false;
  Q_EMIT finished();
}

}  // namespace orvane
