#include "app/privacy/PrivacyModel.h"

#include "app/common/Text.h"
#include "core/base/text/Json.h"
#include "core/platform/Preferences.h"
#include "core/safety/services/PermissionsManager.h"

#include <QDebug>

#include <algorithm>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view requestKey = "OrvaneLastSentRequest";

struct SentRequest {
  QString text;
  double date = 0;  // milliseconds since 1970
  QString provider;
};

std::optional<SentRequest> storedRequest(const Preferences& preferences) {
  const auto stored = preferences.value(requestKey);
  if (!stored || !stored->is_object()) return std::nullopt;
  try {
    return SentRequest{textFrom(stringAt(*stored, "text")), stored->value("date", 0.0),
                       textFrom(stringAt(*stored, "provider"))};
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace

PrivacyModel::PrivacyModel(WindowServices services, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_granted(m_services.tasks) {}

bool PrivacyModel::hasFullDiskPermission() const noexcept {
  return m_services.tasks.profile.hasFullDiskPermission();
}

int PrivacyModel::unreadableCount() const {
  return static_cast<int>(std::ranges::count_if(m_folders, [](const QVariant& folder) {
    const auto row = folder.toMap();
    return row["exists"].toBool() && !row["canBeRead"].toBool();
  }));
}

QString PrivacyModel::sandbox() const {
  return textFrom(m_services.tasks.profile.sandbox());
}

void PrivacyModel::refresh() {
  m_queue.post([this](const std::stop_token&) {
    const bool hasAccess = m_services.permissions.checkFullDiskAccess();
    const auto folders = m_granted.rows();
    const auto sent = storedRequest(m_services.preferences);
    callOn(this, [this, hasAccess, folders, sent] {
      if (sent && sent->date > m_lastRequestDate) showRequest(sent->text, sent->date, sent->provider);
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
  showRequest(text, date, provider);
  m_queue.post([this, text = text.toStdString(), date, provider = provider.toStdString()](const std::stop_token&) {
    try {
      m_services.preferences.setValue(requestKey, Json{{"text", text}, {"date", date}, {"provider", provider}});
    } catch (const std::exception& error) {
      qWarning("The preferences cannot be written: %s", error.what());
    }
  });
}

void PrivacyModel::showRequest(const QString& text, double date, const QString& provider) {
  m_lastRequest = text;
  m_lastRequestDate = date;
  m_lastRequestProvider = provider;
  Q_EMIT requestChanged();
}

}  // namespace orvane
