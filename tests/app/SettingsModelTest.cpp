#include "app/settings/SettingsModel.h"

#include "app/privacy/PrivacyModel.h"
#include "app/settings/TidyModel.h"
#include "core/assistant/records/AIProvider.h"
#include "core/assistant/services/KeychainService.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/platform/BackgroundScheduler.h"
#include "core/platform/LoginItems.h"
#include "core/platform/SecretStore.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "core/rules/services/UserNotificationService.h"
#include "core/safety/records/ManagedFolderType.h"
#include "platform/linux/CurlUrlReader.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/RecordingCenter.h"

#include <atomic>
#include <filesystem>
#include <map>
#include <stdexcept>

namespace orvane::test {
namespace {

class MemoryScheduler : public BackgroundScheduler {
 public:
  void install(const BackgroundJob& wanted) override { job = wanted; }
  void uninstall(const std::string& /*label*/) override { job.reset(); }
  [[nodiscard]] bool isInstalled(const std::string& /*label*/) const override { return job.has_value(); }
  [[nodiscard]] std::chrono::seconds interval() const { return job ? job->interval : std::chrono::seconds(0); }
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
    ++asked;
    const auto found = secrets.find(service + "/" + account);
    return found == secrets.end() ? std::nullopt : std::optional(found->second);
  }
  std::atomic<bool> isLocked = false;
  std::atomic<int> asked = 0;
  std::map<std::string, SecretText> secrets;
};

class RefusingLoginItems : public LoginItems {
 public:
  [[nodiscard]] bool isEnabled() const override { return false; }
  void setEnabled(bool /*isEnabled*/) override { throw std::runtime_error("no session"); }
};

class SettingsModelTest : public WindowFixture {
 public:
  SettingsModelTest() {
    tidySettings.update([this](AutoOrganizeSettings& settings) { settings.folderPaths = {tree.path("Downloads")}; });
    EXPECT_TRUE(becomesTrue([this] { return tidying.isReady(); }));
    afterChange([this] { model.readStored(); });
    EXPECT_EQ(keyRing.asked, 0) << "the first sheet shows folders";
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
  void add(const char* folder) {
    tree.folder(folder);
    afterChange([&] { model.addFolder("file://" + place(folder)); });
  }
  void remove(const char* folder) {
    afterChange([&] { model.removeFolder(place(folder)); });
  }
  [[nodiscard]] static std::vector<std::string> namesOf(const QVariantList& rows) {
    std::vector<std::string> names;
    for (const auto& row : rows) names.push_back(row.toMap().value("name").toString().toStdString());
    return names;
  }
  [[nodiscard]] bool isKeyStored(int row) const { return model.keys().at(row).toMap().value("isStored").toBool(); }

  MemoryScheduler scheduler;
  MemoryKeyRing keyRing;
  RecordingCenter center;
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
  add("Projects");
  EXPECT_THAT(namesOf(model.folders()), ElementsAre("Downloads", "Projects"));
  EXPECT_TRUE(model.folderError().isEmpty());
  add("Projects/inside");
  EXPECT_EQ(model.folders()[1].toMap()["coveredBy"], "");
  EXPECT_EQ(model.folders()[2].toMap()["coveredBy"], "~/Projects");
  for (const auto* folder : {"Projects/inside", "Downloads", "Projects"}) remove(folder);
  EXPECT_THAT(namesOf(model.folders()), ElementsAre("Projects"));
  EXPECT_EQ(model.folderError(), "At least one folder has to stay: add another one first.");
  afterChange([&] { model.addFolder("/etc"); });
  EXPECT_THAT(namesOf(model.folders()), ElementsAre("Projects"));
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
  EXPECT_FALSE(model.agentInstalled() || coordinator.getSettings().isEnabled);
}

TEST_F(SettingsModelTest, storesKeysWithoutShowingThem) {
  ASSERT_EQ(model.keys().size(), 2);
  const auto account = model.keys().front().toMap().value("account").toString();
  afterChange([&] { model.storeKey(account, "  secret\n"); });
  EXPECT_TRUE(isKeyStored(0) && !isKeyStored(1));
  const auto key = storedKeys.getKey(account.toStdString());
  ASSERT_TRUE(key && key->view() == "secret");
  afterChange([&] { model.removeKey(account); });
  EXPECT_TRUE(!isKeyStored(0) && model.keyError().isEmpty());
  keyRing.isLocked = true;
  afterChange([&] { model.storeKey(account, "secret"); });
  EXPECT_FALSE(isKeyStored(0) || model.keyError().isEmpty());
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
  EXPECT_TRUE(shows(model, {{"modelError", ""}, {"isModelNew", false}}));
}

TEST_F(SettingsModelTest, asksForNotificationsAgain) {
  for (const bool fails : {true, false}) {
    center.fails = fails;
    afterChange([&] { model.askForNotifications(); });
    EXPECT_EQ(model.notificationsAvailable(), !fails);
  }
}

TEST_F(SettingsModelTest, changesTheAutomaticOrganizerWithinItsBounds) {
  model.setRecentsDays(99);
  EXPECT_EQ(model.recentsDays(), 30);
  ASSERT_TRUE(becomesTrue([&] { return tidySettings.get().recentsDays == 30; }));
  tree.folder("Desktop");
  model.addAutoFolder("file://" + place("Desktop"));
  model.removeAutoFolder("file://" + place("Downloads"));
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
  refresh();
  EXPECT_THAT(model.suggestedFolders(), IsEmpty());
  std::filesystem::rename(tree.path("Downloads"), tree.path("Daten"));
  for (const auto type : allManagedFolderTypes) std::filesystem::remove_all(defaultURL(type, tree.path()).path());
  tree.folder("Projekte");
  tree.folder(".hidden");
  tree.file("file");
  refresh();
  EXPECT_THAT(namesOf(model.suggestedFolders()),
              AllOf(testing::IsSupersetOf({"Daten", "Projekte"}), Not(Contains(AnyOf(".hidden", "file")))));
  add("Daten");
  EXPECT_THAT(namesOf(model.folders()), Contains("Daten"));
  EXPECT_THAT(namesOf(model.suggestedFolders()), AllOf(Contains("Projekte"), Not(Contains("Daten"))));
}

using PrivacyModelTest = WindowFixture;

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
  EXPECT_TRUE(shows(next, {{"lastRequest", "POST /"}, {"lastRequestDate", 1000}, {"lastRequestProvider", "Somebody"}}));
  model.openSystemSettings();
  EXPECT_TRUE(becomesTrue([&] {
    const std::lock_guard lock(desktop.mutex);
    return desktop.opened.size() == 1;
  }));
}

}  // namespace
}  // namespace orvane::test
