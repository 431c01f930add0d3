#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// One application as a listing found it.
struct InstalledApp {
  Uuid id = Uuid::random();  // new with each listing
  std::string name;          // for display
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> version;
  FileUrl url;               // of the ".app" bundle
  std::int64_t appSize = 0;  // bytes of the whole bundle
  std::optional<Date> lastOpenedDate;
  bool isSystemProtected = false;  // part of the system: never uninstalled

  bool operator==(const InstalledApp&) const = default;
  [[nodiscard]] std::string formattedSize() const;

  // Keys in field order; what is absent is left out.
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
