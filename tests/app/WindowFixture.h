#pragma once

#include "app/cleanup/CleanupModel.h"
#include "app/common/JournalFeed.h"
#include "app/shell/AppState.h"
#include "app/shell/WindowServices.h"
#include "core/base/text/Json.h"
#include "core/localization/LocalizationManager.h"
#include "core/localization/ThreadSafeLanguageStore.h"
#include "core/platform/Desktop.h"
#include "core/platform/LoginItems.h"
#include "core/rules/records/ScheduleSettings.h"
#include "core/safety/services/PermissionsManager.h"
#include "platform/linux/LinuxVolume.h"
#include "tests/support/Parts.h"
#include "tests/support/TaskFixture.h"

#include <gtest/gtest.h>

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QVariantMap>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace orvane::test {

// Runs the event loop until the condition holds; false when it never does.
template <typename Condition>
[[nodiscard]] bool becomesTrue(Condition condition) {
  const QDeadlineTimer deadline(30'000);
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  return true;
}

// Has a model carry something out, to its end.
template <typename Model, typename Verb>
void finish(Model& model, Verb verb) {
  std::invoke(verb, model);
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
}

// A map has these values, a model these properties, and a row of one these roles, all by their names in the window.
inline testing::AssertionResult shows(const QVariantMap& shown, const QVariantMap& part) {
  for (auto wanted = part.begin(); wanted != part.end(); ++wanted) {
    const auto value = shown.value(wanted.key());
    if (value == *wanted) continue;
    return testing::AssertionFailure() << wanted.key().toStdString() << " is " << value.toString().toStdString()
                                       << ", not " << wanted->toString().toStdString();
  }
  return testing::AssertionSuccess();
}
inline testing::AssertionResult shows(const QObject& model, const QVariantMap& part) {
  QVariantMap shown;
  for (const auto& name : part.keys()) shown.insert(name, model.property(name.toUtf8().constData()));
  return shows(shown, part);
}
inline testing::AssertionResult shows(const QAbstractItemModel& model, int row, const QVariantMap& part) {
  QVariantMap shown;
  const auto roles = model.roleNames();
  for (const auto& name : part.keys())
    shown.insert(name, model.data(model.index(row, 0), roles.key(name.toUtf8(), -1)));
  return shows(shown, part);
}

// Notes what was to be shown instead of showing it.
class NotingDesktop : public Desktop {
 public:
  bool openUrl(const std::string& url) override {
    const std::lock_guard lock(mutex);
    opened.push_back(url);
    return true;
  }
  bool reveal(const FileUrl& item) override {
    const std::lock_guard lock(mutex);
    revealed.push_back(item);
    return true;
  }
  [[nodiscard]] std::vector<FileUrl> allRevealed() {
    const std::lock_guard lock(mutex);
    return revealed;
  }
  std::mutex mutex;
  std::vector<std::string> opened;
  std::vector<FileUrl> revealed;
};

class NoLoginItems : public LoginItems {
 public:
  [[nodiscard]] bool isEnabled() const override { return false; }
  void setEnabled(bool /*isEnabled*/) override {}
};

// The window's services over a home of their own: ~/Downloads is granted.
class WindowFixture : public TaskFixture {
 public:
  WindowFixture() { speak(AppLanguage::en); }
  ~WindowFixture() override { speak(AppLanguage::en); }

  // Of paths below the home.
  [[nodiscard]] testing::AssertionResult holds(const std::vector<std::string>& there,
                                               const std::vector<std::string>& gone = {}) const {
    return test::holds(tree, there, gone);
  }
  [[nodiscard]] QString place(std::string_view relative) const { return QString::fromStdString(tree.path(relative)); }

  static void speak(AppLanguage language) { ThreadSafeLanguageStore::shared().setCurrentLanguage(language); }

  [[nodiscard]] WindowServices services() {
    return {
        .tasks = taskServices(),
        .permissions = permissions,
        .preferences = preferences,
        .localization = localization,
        .volume = volume,
        .desktop = desktop,
        .scheduleSettings = [this] { return schedule; },
    };
  }

  NotingDesktop desktop;
  LinuxVolume volume;
  PermissionsManager permissions{desktop, tree.path()};
  LocalizationManager localization{preferences, ThreadSafeLanguageStore::shared(), "en"};
  ScheduleSettings schedule;
};

}  // namespace orvane::test
