#pragma once

#include <string>
#include <string_view>

namespace orvane {

class Desktop;

// Whether the system lets this program read what only programs with full disk access may read. Has no state; callable
// from any thread.
class PermissionsManager {
 public:
  // The system's page where the user grants full disk access.
  static constexpr std::string_view fullDiskAccessSettingsURL =
      "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";

  PermissionsManager(Desktop& desktop, std::string homeFolder);
  static PermissionsManager& shared();

  // True when one of the folders that are probed exists and can be listed.
  [[nodiscard]] bool checkFullDiskAccess() const;
  // False when the page could not be opened.
  bool openSystemSettings();

 private:
  Desktop& m_desktop;
  std::string m_homeFolder;
};

}  // namespace orvane
