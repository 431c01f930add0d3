#include "app/settings/SettingsModel.h"

#include "app/privacy/PrivacyModel.h"
#include "app/settings/TidyModel.h"
#include "core/assistant/records/AIProvider.h"
#include "core/assistant/services/KeychainService.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/platform/BackgroundScheduler.h"
#include "core/platform/LoginItems.h"
#include "core/platform/NotificationCenter.h"
#include "core/platform/SecretStore.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "core/rules/services/UserNotificationService.h"
#include "core/safety/records/ManagedFolderType.h"
#include "platform/linux/CurlUrlReader.h"
#include "tests/app/WindowFixture.h"

#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <map>
#include <stdexcept>

namespace orvane::test {
namespace {

class MemoryScheduler : public BackgroundScheduler {
 public:
  void install(const BackgroundJob& wanted) override {
    const std::lock_guard lock(mutex);
    job = wanted;
  }
  void uninstall(const std::string& /*label*/) override {
    const std::lock_guard lock(mutex);
    job.reset();
  }
  [[nodiscard]] bool isInstalled(const std::string& /*label*/) const override {
    const std::lock_guard lock(mutex);
    return job.has_value();
  }
  [[nodiscard]] std::chrono::seconds interval() const {
    const std::lock_guard lock(mutex);
    return job ? job->interval : std::chrono::seconds(0);
  }
  mutable std::mutex mutex;
  std::optional<BackgroundJob> job;
};

// A key ring that can be locked.
class MemoryKeyRing : public SecretStore {
 public:
  [[nodiscard]] bool add(const std::string& service, const std::string& account, const SecretText& secret) override {
    if (isLocked) return false;
    secrets.insert_or_assign(service + "/" + account, secret);
    return true;
  }
  [[nodiscard]] bool remove(const std::string& service, const std::string& account) override {
    if (isLocked) return false;
    secrets.erase(service + "/" + account);
    return true;
  }
  [[nodiscard]] std::optional<SecretText> find(const std::string& service, const std::string& account) override {
    const auto found = secrets.find(service + "/" + account);
    return found == secrets.end() ? std::nullopt : std::optional(found->second);
  }
  std::atomic<bool> isLocked = false;
  std::map<std::string, SecretText> secrets;
};

class NoCenter : public NotificationCenter {
 public:
  bool requestAuthorization() override { return isAllowed; }
  void post(const Notification& /*notification*/) override {}
  void awaitAnswers(std::chrono::milliseconds /*limit*/) noexcept override {}
  std::atomic<bool> isAllowed = false;
};

class RefusingLoginItems : public LoginItems {
 public:
  [[nodiscard]] bool isEnabled() const override { return false; }
  void setEnabled(bool /*isEnabled*/) override { throw std::runtime_error("no session"); }
};

class SettingsModelTest : public TaskFixture {
 public:
  SettingsModelTest() {
    tidySettings.update([this](AutoOrganizeSettings& settings) { settings.folderPaths = {tree.path("Downloads")}; });
    EXPECT_TRUE(becomesTrue([this] { return tidying.isReady(); }));
    refresh();
  }

  // Waits for what the model does in the background.
  template <typename Act>
  void afterChange(Act act) {
    bool isPublished = false;
    const auto connection = QObject::connect(&model, &SettingsModel::published, [&] { isPublished = true; });
    act();
    EXPECT_TRUE(becomesTrue([&] { return isPublished; }));
    QObject::disconnect(connection);
  }
  void refresh() {
    afterChange([this] { model.refresh(); });
  }
  [[nodiscard]] std::vector<std::string> folderNames() const {
    std::vector<std::string> names;
    for (const auto& row : model.folders()) names.push_back(row.toMap().value("name").toString().toStdString());
    return names;
  }
  [[nodiscard]] bool isKeyStored(int row) const { return model.keys().at(row).toMap().value("isStored").toBool(); }

  MemoryScheduler scheduler;
  MemoryKeyRing keyRing;
  NoCenter center;
  RefusingLoginItems loginItems;
  UserNotificationService notifications{center, [](std::string_view) {}};
  LaunchAgentManager agent{scheduler, tree.path()};
  KeychainService storedKeys{keyRing};
  AutoOrganizer tidier{taskServices()};
  ScheduleCoordinator coordinator{
      {.preferences = preferences, .tasks = taskServices(), .notificationService = notifications}};
  CurlUrlReader urls;
  TidyModel tidying{[this](RepeatingTimer& timer) {
    return AutoOrganizeController::Collaborators{
        .organizer = tidier, .store = tidySettings, .factory = topics, .timer = timer, .loginItems = loginItems};
  }};
  SettingsModel model{{.tasks = taskServices(),
                       .schedule = coordinator,
                       .agent = agent,
                       .notifications = notifications,
                       .keychain = storedKeys,
                       .preferences = preferences,
                       .urls = urls,
                       .tidy = tidying,
                       .program = "/usr/bin/orvane"}};
};

TEST_F(SettingsModelTest, grantsFoldersAndKeepsTheLastOne) {
  tree.folder("Projects");
  afterChange([&] { model.addFolder(QString::fromStdString(tree.url("Projects").absoluteString())); });
  EXPECT_EQ(folderNames(), (std::vector<std::string>{"Downloads", "Projects"}));
  EXPECT_TRUE(model.folderError().isEmpty());
  tree.folder("Projects/inside");
  afterChange([&] { model.addFolder(QString::fromStdString(tree.url("Projects/inside").absoluteString())); });
  EXPECT_EQ(model.folders()[1].toMap()["coveredBy"], "");
  EXPECT_EQ(model.folders()[2].toMap()["coveredBy"], "~/Projects");
  afterChange([&] { model.removeFolder(QString::fromStdString(tree.path("Projects/inside"))); });
  afterChange([&] { model.removeFolder(QString::fromStdString(tree.path("Downloads"))); });
  EXPECT_EQ(folderNames(), std::vector<std::string>{"Projects"});
  afterChange([&] { model.removeFolder(QString::fromStdString(tree.path("Projects"))); });
  EXPECT_EQ(folderNames(), std::vector<std::string>{"Projects"});
  EXPECT_EQ(model.folderError(), "At least one folder has to stay: add another one first.");
  afterChange([&] { model.addFolder("/etc"); });
  EXPECT_EQ(folderNames(), std::vector<std::string>{"Projects"});
  EXPECT_TRUE(model.folderError().contains("Operation denied"));
}

TEST_F(SettingsModelTest, letsTheBackgroundAgentFollowTheScheduleAndKeepsTheThreshold) {
  afterChange([&] { model.setScheduleEnabled(true); });
  EXPECT_TRUE(model.agentInstalled());
  EXPECT_EQ(scheduler.interval(), std::chrono::hours(7 * 24));
  afterChange([&] { model.setScheduleFrequency(SettingsModel::Daily); });
  EXPECT_EQ(scheduler.interval(), std::chrono::hours(24));
  EXPECT_TRUE(std::holds_alternative<Daily>(coordinator.getSettings().frequency));
  afterChange([&] { model.setScheduleFrequency(SettingsModel::LowSpace); });
  afterChange([&] { model.setScheduleThresholdGB(25); });
  EXPECT_EQ(coordinator.getSettings().frequency, ScheduleFrequency(OnLowDiskSpace{25}));
  afterChange([&] { model.setScheduleFrequency(SettingsModel::Monthly); });
  afterChange([&] { model.setScheduleFrequency(SettingsModel::LowSpace); });
  EXPECT_EQ(model.scheduleThresholdGB(), 25);
  EXPECT_EQ(coordinator.getSettings().frequency, ScheduleFrequency(OnLowDiskSpace{25}));
  afterChange([&] { model.setScheduleEnabled(false); });
  EXPECT_FALSE(model.agentInstalled());
  EXPECT_FALSE(coordinator.getSettings().isEnabled);
}

TEST_F(SettingsModelTest, storesKeysWithoutShowingThem) {
  ASSERT_EQ(model.keys().size(), 2);
  const auto account = model.keys().front().toMap().value("account").toString();
  afterChange([&] { model.storeKey(account, "  secret\n"); });
  EXPECT_TRUE(isKeyStored(0));
  EXPECT_FALSE(isKeyStored(1));
  const auto key = storedKeys.getKey(account.toStdString());
  ASSERT_TRUE(key.has_value());
  EXPECT_EQ(key->view(), "secret");
  afterChange([&] { model.removeKey(account); });
  EXPECT_FALSE(isKeyStored(0));
  EXPECT_TRUE(model.keyError().isEmpty());
  keyRing.isLocked = true;
  afterChange([&] { model.storeKey(account, "secret"); });
  EXPECT_FALSE(isKeyStored(0));
  EXPECT_FALSE(model.keyError().isEmpty());
}

TEST_F(SettingsModelTest, installsTheBackgroundAgentThatAScheduleOfTheTerminalLacks) {
  coordinator.changeSettings([](ScheduleSettings& settings) { settings.isEnabled = true; });
  refresh();
  EXPECT_FALSE(model.agentInstalled());
  afterChange([&] { model.installAgent(); });
  EXPECT_TRUE(model.agentInstalled());
  EXPECT_EQ(scheduler.interval(), std::chrono::hours(7 * 24));
}

TEST_F(SettingsModelTest, takesModelsOfThisComputerOnly) {
  afterChange([&] { model.setModelAddress(" http://127.0.0.1:11434 "); });
  EXPECT_EQ(preferences.value("OrvaneLocalModelEndpoint"), Json("http://127.0.0.1:11434"));
  EXPECT_TRUE(model.isModelNew());
  for (const auto* address : {"http://example.org:11434", "127.0.0.1", "ftp://localhost"}) {
    model.setModelAddress(address);
    EXPECT_TRUE(becomesTrue([&] { return !model.modelError().isEmpty(); })) << address;
    model.setModelAddress("http://127.0.0.1:11434");
    EXPECT_TRUE(becomesTrue([&] { return model.modelError().isEmpty(); })) << address;
  }
  EXPECT_EQ(preferences.value("OrvaneLocalModelEndpoint"), Json("http://127.0.0.1:11434"));
  afterChange([&] { model.setModelName("small"); });
  EXPECT_EQ(preferences.value("OrvaneLocalModelName"), Json("small"));
  afterChange([&] { model.setModelAddress(""); });
  EXPECT_TRUE(model.modelError().isEmpty());
  EXPECT_FALSE(model.isModelNew());
}

TEST_F(SettingsModelTest, asksForNotificationsAgain) {
  EXPECT_FALSE(model.notificationsAvailable());
  center.isAllowed = true;
  afterChange([&] { model.askForNotifications(); });
  EXPECT_TRUE(model.notificationsAvailable());
}

TEST_F(SettingsModelTest, changesTheAutomaticOrganizerWithinItsBounds) {
  model.setRecentsDays(99);
  EXPECT_EQ(model.recentsDays(), 30);
  ASSERT_TRUE(becomesTrue([&] { return tidySettings.get().recentsDays == 30; }));
  tree.folder("Desktop");
  model.addAutoFolder(QString::fromStdString(tree.url("Desktop").absoluteString()));
  model.removeAutoFolder(QString::fromStdString(tree.url("Downloads").absoluteString()));
  // Each change is preferences in the background, and there is one folder at the start as well.
  EXPECT_TRUE(becomesTrue([&] {
    const auto left = model.autoFolders();
    return left.size() == 1 && left.front().toMap().value("path") == "~/Desktop";
  }));
}

TEST_F(SettingsModelTest, saysWhyLaunchAtLoginWasRefused) {
  tidying.setLaunchAtLogin(true);
  ASSERT_TRUE(becomesTrue([&] { return !tidying.launchAtLoginError().isEmpty(); }));
  EXPECT_FALSE(tidying.launchAtLogin());
  EXPECT_EQ(tidying.launchAtLoginError(),
            "Couldn't change Launch at Login: no session. You can add Orvane in System Settings → General → Login "
            "Items.");
}

TEST_F(SettingsModelTest, offersFoldersWhereNoneOfTheUsualOnesExists) {
  const auto suggested = [this] {
    std::vector<std::string> names;
    for (const auto& row : model.suggestedFolders())
      names.push_back(row.toMap().value("name").toString().toStdString());
    return names;
  };
  refresh();
  EXPECT_THAT(suggested(), testing::IsEmpty());
  std::filesystem::rename(tree.path("Downloads"), tree.path("Daten"));
  for (const auto type : allManagedFolderTypes) std::filesystem::remove_all(defaultURL(type, tree.path()).path());
  tree.folder("Projekte");
  tree.folder(".hidden");
  tree.file("file");
  refresh();
  EXPECT_THAT(suggested(), testing::IsSupersetOf({"Daten", "Projekte"}));
  EXPECT_THAT(suggested(), testing::Not(testing::Contains(testing::AnyOf(".hidden", "file"))));
  afterChange([this] { model.addFolder(QString::fromStdString(tree.url("Daten").absoluteString())); });
  EXPECT_THAT(folderNames(), testing::Contains("Daten"));
  EXPECT_THAT(suggested(), testing::Contains("Projekte"));
  EXPECT_THAT(suggested(), testing::Not(testing::Contains("Daten")));
}

class PrivacyModelTest : public WindowFixture {};

TEST_F(PrivacyModelTest, showsTheFoldersAndTheLastRequest) {
  PrivacyModel model(services());
  model.refresh();
  ASSERT_TRUE(becomesTrue([&] { return !model.folders().isEmpty(); }));
  EXPECT_EQ(model.folders().front().toMap().value("path"), "~/Downloads");
  EXPECT_TRUE(model.lastRequest().isEmpty());
  model.setLastRequest("POST /", 1000, "Somebody");
  EXPECT_EQ(model.lastRequest(), "POST /");
  ASSERT_TRUE(becomesTrue([&] { return preferences.value("OrvaneLastSentRequest").has_value(); }));
  PrivacyModel next(services());
  next.refresh();
  ASSERT_TRUE(becomesTrue([&] { return !next.lastRequest().isEmpty(); }));
  EXPECT_EQ(next.lastRequest(), "POST /");
  EXPECT_EQ(next.lastRequestDate(), 1000);
  EXPECT_EQ(next.lastRequestProvider(), "Somebody");
  model.openSystemSettings();
  EXPECT_TRUE(becomesTrue([&] {
    const std::lock_guard lock(desktop.mutex);
    return desktop.opened.size() == 1;
  }));
}

}  // namespace
}  // namespace orvane::test
