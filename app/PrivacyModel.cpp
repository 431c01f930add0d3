#include "app/PrivacyModel.h"

#include "core/safety/PermissionsManager.h"

#include <utility>

namespace orvane {

PrivacyModel::PrivacyModel(WindowServices services, const PathValidator& validator, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_granted(m_services.folders, validator, m_services.home) {}

void PrivacyModel::refresh() {
  m_queue.post([this](const std::stop_token&) {
    const bool hasAccess = m_services.permissions.checkFullDiskAccess();
    const auto folders = m_granted.rows();
    callOn(this, [this, hasAccess, folders] {
      m_hasFullDiskAccess = hasAccess;
      m_folders = folders;
      Q_EMIT changed();
    });
  });
}

void PrivacyModel::openSystemSettings() {
  m_queue.post([this](const std::stop_token&) { m_services.permissions.openSystemSettings(); });
}

void PrivacyModel::setLastRequest(const QString& text, double date, const QString& provider) {
  m_lastRequest = text;
  m_lastRequestDate = date;
  m_lastRequestProvider = provider;
  Q_EMIT requestChanged();
}

}  // namespace orvane
