#include "platform/linux/BusNotificationCenter.h"

#include "platform/linux/BusProxy.h"
#include "platform/posix/TimeLimit.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace orvane {
namespace {

constexpr auto serviceName = "org.freedesktop.Notifications";
constexpr auto objectPath = "/org/freedesktop/Notifications";
constexpr auto interfaceName = "org.freedesktop.Notifications";
constexpr auto clickAction = "default";  // the action that a click on the notification itself stands for

// For all calls that one operation makes, and for each of them.
constexpr std::chrono::milliseconds operationTime{950};
constexpr std::chrono::milliseconds callTime{800};

}  // namespace

// One connection with the service, and what came of the notifications that were posted through it.
class BusNotificationCenter::Conversation {
 public:
  Conversation(std::function<void()> whenClicked, std::function<std::string()> clickLabel)
      : m_whenClicked(std::move(whenClicked)),
        m_clickLabel(std::move(clickLabel)),
        m_connection(sdbus::createSessionBusConnection()),
        m_service(makeBusProxy(*m_connection, serviceName, objectPath)) {
    m_service->uponSignal("ActionInvoked")
        .onInterface(interfaceName)
        .call([this](std::uint32_t id, const std::string& action) {
          if (action != clickAction || !isOurs(id)) return;
          m_whenClicked();
          close(id);  // it may stay on the screen, but nothing more comes of it
        });
    m_service->uponSignal("NotificationClosed")
        .onInterface(interfaceName)
        .call([this](std::uint32_t id, std::uint32_t /*reason*/) { close(id); });
    finishSignals(*m_service);
    m_connection->enterEventLoopAsync();
  }

  [[nodiscard]] std::vector<std::string> capabilities() {
    std::vector<std::string> result;
    m_service->callMethod("GetCapabilities").onInterface(interfaceName).withTimeout(callTime).storeResultsTo(result);
    return result;
  }

  void post(const Notification& notification) {
    const auto known = capabilities();
    std::vector<std::string> actions;
    if (std::ranges::find(known, "actions") != known.end()) {
      actions = {clickAction, m_clickLabel()};
    }
    const std::map<std::string, sdbus::Variant> hints{
        {"desktop-entry", sdbus::Variant(std::string("orvane"))},
        {"sound-name", sdbus::Variant(std::string("message"))},
    };
    constexpr std::uint32_t replacesNone = 0;
    constexpr std::int32_t expiresAsTheServiceLikes = -1;
    std::uint32_t id = 0;
    m_service->callMethod("Notify")
        .onInterface(interfaceName)
        .withTimeout(callTime)
        .withArguments("Orvane", replacesNone, "orvane", notification.title, notification.body, actions, hints,
                       expiresAsTheServiceLikes)
        .storeResultsTo(id);
    const std::lock_guard lock(m_mutex);
    m_posted.insert(id);
    m_hasActions = m_hasActions || !actions.empty();
  }

  void awaitAnswers(std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    if (!m_hasActions) return;
    m_changed.wait_for(lock, limit, [&] { return std::ranges::includes(m_closed, m_posted); });
  }

 private:
  bool isOurs(std::uint32_t id) {
    const std::lock_guard lock(m_mutex);
    return m_posted.contains(id);
  }
  // It may be told of before the call that posted it has returned.
  void close(std::uint32_t id) {
    const std::lock_guard lock(m_mutex);
    m_closed.insert(id);
    m_changed.notify_all();
  }

  std::function<void()> m_whenClicked;
  std::function<std::string()> m_clickLabel;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::set<std::uint32_t> m_posted;
  std::set<std::uint32_t> m_closed;  // those of other programs too
  bool m_hasActions = false;
  std::unique_ptr<sdbus::IConnection> m_connection;
  std::unique_ptr<sdbus::IProxy> m_service;
};

BusNotificationCenter::BusNotificationCenter(std::function<void()> whenClicked, std::function<std::string()> clickLabel)
    : m_whenClicked(std::move(whenClicked)), m_clickLabel(std::move(clickLabel)) {}

BusNotificationCenter::~BusNotificationCenter() = default;

std::shared_ptr<BusNotificationCenter::Conversation> BusNotificationCenter::conversation() {
  const std::lock_guard lock(m_mutex);
  if (m_conversation) return m_conversation;
  const auto begun = finishedWithin<std::shared_ptr<Conversation>>(
      operationTime, [whenClicked = m_whenClicked, clickLabel = m_clickLabel] {
        return std::make_shared<Conversation>(whenClicked, clickLabel);
      });
  if (!begun) throw std::runtime_error("the session bus does not answer");
  m_conversation = *begun;
  return m_conversation;
}

bool BusNotificationCenter::requestAuthorization() {
  const auto answer = finishedWithin<bool>(operationTime, [with = conversation()] {
    (void)with->capabilities();
    return true;
  });
  return answer.value_or(false);
}

void BusNotificationCenter::post(const Notification& notification) {
  const auto answer = finishedWithin<bool>(operationTime, [with = conversation(), notification] {
    with->post(notification);
    return true;
  });
  if (!answer) throw std::runtime_error("the notification service does not answer");
}

void BusNotificationCenter::awaitAnswers(std::chrono::milliseconds limit) noexcept {
  std::shared_ptr<Conversation> with;
  {
    const std::lock_guard lock(m_mutex);
    with = m_conversation;
  }
  if (with) with->awaitAnswers(limit);
}

}  // namespace orvane
