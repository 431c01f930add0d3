#include "app/shell/Window.h"

#include "app/agent/AgentModel.h"
#include "app/apps/AppsModel.h"
#include "app/cleanup/CleanupModel.h"
#include "app/common/FileWatch.h"
#include "app/common/Format.h"
#include "app/common/IconProvider.h"
#include "app/common/JournalFeed.h"
#include "app/common/PageDrawing.h"
#include "app/common/PictureProvider.h"
#include "app/common/Pictures.h"
#include "app/common/Text.h"
#include "app/duplicates/DuplicatesModel.h"
#include "app/history/HistoryModel.h"
#include "app/organize/OrganizeModel.h"
#include "app/overview/MapModel.h"
#include "app/overview/OverviewModel.h"
#include "app/privacy/PrivacyModel.h"
#include "app/rules/RulesModel.h"
#include "app/settings/SettingsModel.h"
#include "app/settings/TidyModel.h"
#include "app/shell/AppState.h"
#include "app/shell/DesktopAppearance.h"
#include "app/shell/InterfaceFont.h"
#include "app/shell/LanguageModel.h"
#include "app/shell/LauncherEntry.h"
#include "app/shell/NavigationModel.h"
#include "app/shell/QuitGuard.h"
#include "app/shell/TableTranslator.h"
#include "app/shell/TrayIcon.h"
#include "app/shell/WindowMemory.h"
#include "core/assistant/services/KeychainService.h"
#include "core/localization/LocalizationManager.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/platform/LoginItems.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "core/rules/services/UserNotificationService.h"
#include "platform/SystemServices.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <optional>
#include <utility>
#include <vector>

// Made from this module's headers; registers the types that QML uses.
void qml_register_types_Orvane();

namespace orvane {
namespace {

AutoOrganizeController::Collaborators tidyCollaborators(RepeatingTimer& timer) {
  return {.organizer = AutoOrganizer::shared(),
          .store = AutoOrganizeSettingsStore::shared(),
          .factory = TaskServices::shared().topics,
          .timer = timer,
          .loginItems = systemLoginItems(),
          .profile = systemProfile()};
}

SettingsModel::Collaborators settingsCollaborators(const WindowServices& services, TidyModel& tidy) {
  return {.tasks = services.tasks,
          .schedule = ScheduleCoordinator::shared(),
          .agent = LaunchAgentManager::shared(),
          .notifications = UserNotificationService::shared(),
          .keychain = KeychainService::shared(),
          .preferences = services.preferences,
          .urls = systemHttpUrlReader(),
          .tidy = tidy,
          .program = windowProgram()};
}

// Of a glance at an item: the picture, or the first page.
QImage readLook(const FileUrl& item, QSize size) {
  return isPageName(item) ? PageReader{windowProgram()}.read(item, size) : readWholePicture(item, size);
}

template <typename Model>
QVariant variantOf(Model& model) {
  return QVariant::fromValue(&model);
}

// The screen of a section stands in a folder named as the section: overview/OverviewScreen.qml.
QUrl screenOf(const NavigationRow& row) {
  const auto folder = textFrom(row.rawValue);
  const auto name = folder.left(1).toUpper() + folder.mid(1);
  return {QStringLiteral("qrc:/qt/qml/Orvane/%1/%2Screen.qml").arg(folder, name)};
}

// Of what the window remembers.
const auto sectionKey = QStringLiteral("section");
const auto sortKey = QStringLiteral("cleanupSort");
const auto reversedKey = QStringLiteral("cleanupReversed");
const auto riskKey = QStringLiteral("cleanupRisk");
const auto scanDateKey = QStringLiteral("scanDate");
const auto scanBytesKey = QStringLiteral("scanBytes");
const auto keepKey = QStringLiteral("keepCopy");
const auto themeKey = QStringLiteral("theme");
const auto endsWithWindowKey = QStringLiteral("endsWithWindow");

}  // namespace

struct Window::Parts {
  explicit Parts(WindowServices given)
      : services(std::move(given)),
        memory(services),
        state(services),
        languages(services.localization),
        feed(services),
        cleanup(services, state),
        history(services, feed),
        overview(services, {.state = state, .cleanup = cleanup, .history = history, .feed = feed}),
        tidy(tidyCollaborators),
        duplicates(services),
        apps(services),
        organize(services),
        rules(services),
        agent(services),
        map(services, {.state = state,
                       .cleanup = cleanup,
                       .duplicates = duplicates,
                       .organize = organize,
                       .maps = MapServices::shared()}),
        privacy(services),
        settings(settingsCollaborators(services, tidy)),
        quitGuard(runModels(), tidy),
        launcher(runModels()),
        tray(state, tidy) {}

  WindowServices services;
  // As the desktop has it, before a language changed anything.
  const QFont systemFont = QGuiApplication::font();
  TableTranslator translator;
  DesktopAppearance appearance;
  FileWatch preferences;
  WindowMemory memory;
  AppState state;
  NavigationModel navigation;
  LanguageModel languages;
  JournalFeed feed;
  CleanupModel cleanup;
  HistoryModel history;
  OverviewModel overview;
  TidyModel tidy;
  DuplicatesModel duplicates;
  AppsModel apps;
  OrganizeModel organize;
  RulesModel rules;
  AgentModel agent;
  MapModel map;
  PrivacyModel privacy;
  SettingsModel settings;
  [[nodiscard]] std::vector<RunModel*> runModels() {
    return {&cleanup, &history, &duplicates, &apps, &organize, &rules, &agent};
  }

  // The models of a section's screen, by the names of its properties.
  [[nodiscard]] QVariantMap propertiesOf(AppNavigationItem section) {
    switch (section) {
      case AppNavigationItem::Overview:
        return {{"model", variantOf(overview)}, {"map", variantOf(map)}};
      case AppNavigationItem::Cleanup:
        return {{"model", variantOf(cleanup)}, {"overview", variantOf(overview)}};
      case AppNavigationItem::Duplicates:
        return {{"model", variantOf(duplicates)}};
      case AppNavigationItem::Apps:
        return {{"model", variantOf(apps)}};
      case AppNavigationItem::Organize:
        return {{"model", variantOf(organize)}};
      case AppNavigationItem::Rules:
        return {{"model", variantOf(rules)}};
      case AppNavigationItem::Agent:
        return {{"model", variantOf(agent)}};
      case AppNavigationItem::History:
        return {{"model", variantOf(history)}};
      case AppNavigationItem::Privacy:
        return {{"model", variantOf(privacy)}};
      case AppNavigationItem::Settings:
        return {{"model", variantOf(settings)},
                {"languages", variantOf(languages)},
                {"overview", variantOf(overview)},
                {"tidy", variantOf(tidy)},
                {"map", variantOf(map)}};
    }
    return {};
  }

  QPointer<RunModel> lastRun;  // the last that moved something
  bool tellsUndo = false;      // the undo under way was asked for from anywhere
  QuitGuard quitGuard;
  LauncherEntry launcher;
  TrayIcon tray;
  QQmlApplicationEngine engine;
  bool isToOrganize = false;  // once the folders are known
};

Window::Window(WindowServices services, QObject* parent) : QObject(parent) {
  Format::followLanguage();
  m_parts = std::make_unique<Parts>(std::move(services));
  auto& parts = *m_parts;
  QCoreApplication::installTranslator(&parts.translator);
  connect(&parts.languages, &LanguageModel::currentChanged, this, &Window::languageChanged);

  const auto applyAppearance = [&parts] {
    parts.state.setAppearance(parts.appearance.isDark(), parts.appearance.isMotionReduced());
    parts.state.setAccent(parts.appearance.accent());
  };
  applyAppearance();
  connect(&parts.appearance, &DesktopAppearance::changed, this, applyAppearance);

  parts.preferences.watch(systemPreferencesFile());
  connect(&parts.preferences, &FileWatch::changed, this, [&parts] {
    parts.languages.reload();
    parts.tidy.reload();
    parts.duplicates.reloadRoots();
    parts.organize.reloadFolders();
    parts.rules.reload();
    parts.overview.reloadSchedule();
    parts.map.reloadChoice();
    parts.settings.reload();
    parts.privacy.refresh();
  });
  connect(&parts.feed, &JournalFeed::loaded, &parts.cleanup, &CleanupModel::followJournal);
  connect(&parts.tidy, &TidyModel::changed, this, [&parts] {
    if (parts.tidy.isReady() && std::exchange(parts.isToOrganize, false)) parts.tidy.look();
  });
  connect(&parts.settings, &SettingsModel::keysChanged, &parts.agent, &AgentModel::reloadProviders);
  connect(&parts.agent, &AgentModel::requestSent, &parts.privacy, &PrivacyModel::setLastRequest);
  connect(&parts.agent, &AgentModel::ruleMade, this, [&parts](const CleanupRule& rule) {
    parts.state.setSelectedNavigation(static_cast<int>(AppNavigationItem::Rules));
    parts.rules.compose(rule);
  });
  connect(&parts.state, &AppState::raised, this, [this] { raise({}); });
  connect(&parts.state, &AppState::quitRequested, &parts.quitGuard, &QuitGuard::quit);
  connect(&parts.state, &AppState::quitWhenFinished, &parts.quitGuard, &QuitGuard::finishFirst);
  connect(&parts.state, &AppState::quitWhenStopped, &parts.quitGuard, &QuitGuard::stopFirst);
  connect(&parts.quitGuard, &QuitGuard::asked, this, [this] {
    raise({});
    Q_EMIT m_parts->state.quitAsked();
  });
  // Asking the windows to close, as quit() does, would ask the user again.
  connect(
      &parts.quitGuard, &QuitGuard::finished, qApp, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
  remember();
  followRuns();
}

Window::~Window() = default;

// The section, the order and filter of the cleanup, the copy that stays and the choices for the window are as they were
// the last time.
void Window::remember() {
  auto& parts = *m_parts;
  const auto& memory = parts.memory;
  const auto sectionCount = static_cast<int>(navigationRows.size());
  parts.state.setSelectedNavigation(memory.number(sectionKey, 0, sectionCount - 1, parts.state.selectedNavigation()));
  parts.cleanup.setSort(
      static_cast<CleanupModel::Sort>(memory.number(sortKey, 0, CleanupModel::LastUse, parts.cleanup.sort())));
  parts.cleanup.setReversed(memory.flag(reversedKey));
  parts.state.setEarlierScan(memory.figure(scanDateKey), memory.figure(scanBytesKey));
  parts.cleanup.setRiskFilter(memory.number(riskKey, -1, 2, -1));
  parts.duplicates.setKeepStrategy(memory.number(keepKey, 0, 2, 0));
  parts.state.setTheme(memory.number(themeKey, AppState::SystemTheme, AppState::DarkTheme, AppState::SystemTheme));
  parts.state.setClosesToTray(!memory.flag(endsWithWindowKey));
  const auto applyChoices = [&parts] {
    const auto theme = parts.state.theme();
    parts.appearance.setScheme(theme == AppState::SystemTheme ? std::nullopt
                                                              : std::optional(theme == AppState::DarkTheme));
    QGuiApplication::setQuitOnLastWindowClosed(!parts.state.canKeepTray() || !parts.state.closesToTray());
  };
  applyChoices();
  connect(&parts.state, &AppState::choicesChanged, this, [&parts, applyChoices] {
    applyChoices();
    parts.memory.remember(themeKey, parts.state.theme());
    parts.memory.remember(endsWithWindowKey, !parts.state.closesToTray());
  });
  // Without a tray nobody would find the way back to a closed window.
  connect(&parts.state, &AppState::canKeepTrayChanged, this, applyChoices);
  connect(&parts.state, &AppState::navigationChanged, this,
          [&parts] { parts.memory.remember(sectionKey, parts.state.selectedNavigation()); });
  connect(&parts.cleanup, &CleanupModel::queryChanged, this, [&parts] {
    parts.memory.remember(sortKey, static_cast<int>(parts.cleanup.sort()));
    parts.memory.remember(reversedKey, parts.cleanup.isReversed());
    parts.memory.remember(riskKey, parts.cleanup.riskFilter());
  });
  connect(&parts.state, &AppState::summaryChanged, this, [&parts] {
    if (parts.state.isScanning() || !parts.state.hasScanned()) return;
    parts.memory.remember(scanDateKey, parts.state.lastScanDate());
    parts.memory.remember(scanBytesKey, parts.state.proposedBytes());
  });
  connect(&parts.duplicates, &DuplicatesModel::keepStrategyChanged, this,
          [&parts] { parts.memory.remember(keepKey, parts.duplicates.keepStrategy()); });
}

// The last run of the window can be undone from anywhere.
void Window::followRuns() {
  auto& parts = *m_parts;
  for (auto* model : parts.runModels()) {
    connect(model, &RunModel::cleaned, this, [&parts, model] {
      if (model->canUndo()) parts.lastRun = model;
    });
    connect(model, &RunModel::undone, this, [&parts, model] {
      if (std::exchange(parts.tellsUndo, false)) Q_EMIT parts.state.told(model->resultText());
    });
  }
  connect(&parts.feed, &JournalFeed::loaded, this, [&parts] {
    for (auto* model : parts.runModels()) model->followHistory(parts.feed.contents());
  });
  connect(&parts.tidy, &TidyModel::tidied, this, [&parts] {
    if (parts.tidy.canUndo()) parts.lastRun = nullptr;
  });
  connect(&parts.state, &AppState::undoRequested, this, [&parts] {
    if (parts.lastRun && parts.lastRun->canUndo()) {
      parts.tellsUndo = true;
      parts.lastRun->undo();
    } else if (parts.tidy.canUndo()) {
      parts.tidy.undo();
    } else {
      Q_EMIT parts.state.undoLeftToScreen();
    }
  });
}

bool Window::show() {
  qml_register_types_Orvane();
  auto& parts = *m_parts;
  QGuiApplication::setFont(interfaceFont(parts.systemFont, parts.languages.currentCode()));
  parts.engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
  // The engine owns what it is given.
  parts.engine.addImageProvider(QStringLiteral("icon"), std::make_unique<IconProvider>().release());
  parts.engine.addImageProvider(QString::fromLatin1(thumbnailProvider),
                                std::make_unique<PictureProvider>(readThumbnail).release());
  parts.engine.addImageProvider(QString::fromLatin1(previewProvider),
                                std::make_unique<PictureProvider>(readLook).release());
  parts.engine.addImageProvider(QString::fromLatin1(applicationIconProvider),
                                std::make_unique<PictureProvider>(readApplicationIcon).release());
  QVariantList screens;
  for (const auto& row : navigationRows) {
    auto properties = parts.propertiesOf(row.section);
    properties.insert("appState", variantOf(parts.state));
    screens.append(QVariantMap{{"source", screenOf(row)}, {"properties", properties}});
  }
  parts.engine.setInitialProperties({
      {"appState", variantOf(parts.state)},
      {"memory", variantOf(parts.memory)},
      {"navigation", variantOf(parts.navigation)},
      {"languages", variantOf(parts.languages)},
      {"overview", variantOf(parts.overview)},
      {"history", variantOf(parts.history)},
      {"tidy", variantOf(parts.tidy)},
      {"duplicates", variantOf(parts.duplicates)},
      {"apps", variantOf(parts.apps)},
      {"organize", variantOf(parts.organize)},
      {"agent", variantOf(parts.agent)},
      {"settings", variantOf(parts.settings)},
      {"screens", screens},
  });
  parts.engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Orvane/shell/Main.qml")));
  return !parts.engine.rootObjects().isEmpty();
}

void Window::carryOut(const StartRequest& request) {
  auto& parts = *m_parts;
  for (const auto& row : navigationRows) {
    if (request.section == row.rawValue) parts.state.setSelectedNavigation(static_cast<int>(row.section));
  }
  if (request.work == StartRequest::Work::scan) parts.state.startScan(QString::fromStdString(request.folder));
  if (request.work != StartRequest::Work::organize) return;
  // A window that just opened does not know the folders yet.
  parts.isToOrganize = !parts.tidy.isReady();
  if (!parts.isToOrganize) parts.tidy.look();
}

void Window::raise(const QByteArray& request) {
  carryOut(StartRequest::fromLine(request));
  for (auto* object : m_parts->engine.rootObjects()) {
    auto* window = qobject_cast<QQuickWindow*>(object);
    if (window == nullptr) continue;
    window->show();
    if ((window->windowStates() & Qt::WindowMinimized) != 0) window->showNormal();
    window->raise();
    window->requestActivate();
  }
}

void Window::languageChanged() {
  auto& parts = *m_parts;
  Format::followLanguage();
  QGuiApplication::setFont(interfaceFont(parts.systemFont, parts.languages.currentCode()));
  const int type = qmlTypeId("Orvane", 1, 0, "Format");
  if (auto* format = parts.engine.singletonInstance<Format*>(type)) format->languageChanged();
  parts.engine.retranslate();
  parts.state.languageChanged();
  parts.cleanup.languageChanged();
  parts.history.languageChanged();
  parts.duplicates.languageChanged();
  parts.apps.languageChanged();
  parts.organize.languageChanged();
  parts.rules.languageChanged();
  parts.agent.languageChanged();
  parts.tidy.languageChanged();
  parts.settings.languageChanged();
  parts.tray.languageChanged();
}

}  // namespace orvane
