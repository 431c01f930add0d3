#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/platform/SystemApplications.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace orvane {

// One application as a listing found it.
struct InstalledApp {
  Uuid id = Uuid::random();  // new with each listing
  std::string name;          // for display
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> version;
  FileUrl url;               // of the ".app" bundle, or the place that `system` tells
  std::int64_t appSize = 0;  // bytes of the whole bundle
  std::optional<Date> lastOpenedDate;
  bool isSystemProtected = false;  // part of the system, or a package manager's: never uninstalled here
  // Of one that is no bundle: how this system has it.
  std::shared_ptr<const SystemApplication> system = {};

  bool operator==(const InstalledApp&) const = default;
  [[nodiscard]] std::string formattedSize() const;

  // Keys in field order; what is absent is left out. Of one that is no bundle, "kind", "isOrphan" and
  // "removalCommand" follow.
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
