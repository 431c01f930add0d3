#include "app/shell/WindowMemory.h"

#include "app/common/Text.h"
#include "core/base/text/Json.h"
#include "core/platform/Preferences.h"

#include <QDebug>

#include <chrono>
#include <exception>
#include <utility>

namespace orvane {
namespace {

// A window is resized in many steps, and whoever watches the preferences reads them anew after each change.
constexpr std::chrono::seconds settleTime{10};

QVariant variantFrom(const Json& value) {
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_number()) return value.get<double>();
  if (value.is_string()) return textFrom(value.get<std::string>());
  return {};
}

Json jsonFrom(const QVariant& value) {
  switch (value.userType()) {
    case QMetaType::Bool:
      return value.toBool();
    case QMetaType::Int:
      return value.toInt();
    case QMetaType::Double:
      return value.toDouble();
    default:
      return value.toString().toStdString();
  }
}

}  // namespace

WindowMemory::WindowMemory(WindowServices services, QObject* parent)
    : QObject(parent), m_services(std::move(services)) {
  try {
    const auto stored = m_services.preferences.value(preferencesKey);
    if (stored && stored->is_object()) {
      for (const auto& [name, value] : stored->items()) m_values.insert(textFrom(name), variantFrom(value));
    }
  } catch (const std::exception& error) {
    qWarning("The preferences cannot be read: %s", error.what());
  }
  m_settled.setSingleShot(true);
  m_settled.setInterval(settleTime);
  connect(&m_settled, &QTimer::timeout, this, &WindowMemory::store);
}

WindowMemory::~WindowMemory() {
  // Nothing else goes on any more: the window has closed.
  if (m_settled.isActive()) write(m_values);
}

int WindowMemory::number(const QString& name, int min, int max, int otherwise) const {
  bool isNumber = false;
  const auto value = m_values.value(name).toDouble(&isNumber);
  return isNumber && value >= min && value <= max ? static_cast<int>(value) : otherwise;
}

double WindowMemory::figure(const QString& name) const {
  return m_values.value(name).toDouble();
}

bool WindowMemory::flag(const QString& name) const {
  return m_values.value(name).toBool();
}

QString WindowMemory::text(const QString& name) const {
  return m_values.value(name).toString();
}

void WindowMemory::remember(const QString& name, const QVariant& value) {
  if (m_values.value(name) == value) return;
  m_values.insert(name, value);
  m_settled.start();
}

void WindowMemory::write(const QVariantMap& values) const {
  Json json = Json::object();
  for (auto entry = values.begin(); entry != values.end(); ++entry) {
    json[entry.key().toStdString()] = jsonFrom(entry.value());
  }
  try {
    m_services.preferences.setValue(preferencesKey, json);
  } catch (const std::exception& error) {
    qWarning("The preferences cannot be written: %s", error.what());
  }
}

void WindowMemory::store() {
  m_queue.post([this, values = m_values](const std::stop_token&) { write(values); });
}

}  // namespace orvane
