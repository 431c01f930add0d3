#pragma once

#include "core/platform/NotificationCenter.h"
#include "core/platform/Volume.h"

#include <stdexcept>
#include <vector>

namespace orvane::test {

// Notes what it is to show; where it fails, there is no service of notifications.
class RecordingCenter : public NotificationCenter {
 public:
  bool requestAuthorization() override {
    if (fails) throw std::runtime_error("no service");
    return true;
  }
  void post(const Notification& notification) override {
    if (fails) throw std::runtime_error("no service");
    posted.push_back(notification);
  }
  void awaitAnswers(std::chrono::milliseconds /*limit*/) noexcept override { ++awaited; }

  bool fails = false;
  int awaited = 0;
  std::vector<Notification> posted;
};

// A disk of 10,000 bytes.
class SmallVolume : public Volume {
 public:
  [[nodiscard]] std::optional<VolumeCapacity> capacity(const FileUrl& /*location*/) const override {
    return VolumeCapacity{.totalBytes = 10'000, .availableBytes = free};
  }
  std::int64_t free = 500;
};

}  // namespace orvane::test
