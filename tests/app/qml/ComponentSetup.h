#pragma once

#include "app/common/Format.h"
#include "app/common/IconProvider.h"
#include "app/shell/TableTranslator.h"
#include "core/localization/ThreadSafeLanguageStore.h"

#include <QCoreApplication>
#include <QQmlEngine>

#include <memory>

// Made from the module's headers; registers the types that QML uses.
void qml_register_types_Orvane();

namespace orvane {

// The context that the window gives its components: the texts, the icons, the figures.
class ComponentSetup : public QObject {
  Q_OBJECT

 public Q_SLOTS:
  void applicationAvailable() {
    qml_register_types_Orvane();
    QCoreApplication::installTranslator(&m_translator);
    Format::followLanguage();
  }

  void qmlEngineAvailable(QQmlEngine* engine) {
    m_engine = engine;
    engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine->addImageProvider(QStringLiteral("icon"), std::make_unique<IconProvider>().release());
    qmlRegisterSingletonInstance("Orvane.Tests", 1, 0, "Language", this);
  }

 public:
  // Changes the language as the window does.
  Q_INVOKABLE void select(const QString& code) {
    const auto language = appLanguageFromRawValue(code.toStdString());
    if (!language) return;
    ThreadSafeLanguageStore::shared().setCurrentLanguage(*language);
    Format::followLanguage();
    const int type = qmlTypeId("Orvane", 1, 0, "Format");
    if (auto* format = m_engine->singletonInstance<Format*>(type)) format->languageChanged();
    m_engine->retranslate();
  }

 private:
  TableTranslator m_translator;
  QQmlEngine* m_engine = nullptr;
};

}  // namespace orvane
