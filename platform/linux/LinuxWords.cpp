#include "platform/linux/LinuxProfile.h"

#include <unistd.h>

#include <array>

namespace orvane {
namespace {

// No permission opens every folder here, so the texts of one speak of folders.
constexpr std::array usualWords{
    SystemProfile::Wording{"app.tagline", "system.tagline"},
    SystemProfile::Wording{"privacy.statement", "system.privacy_statement"},
    SystemProfile::Wording{"permission.fda_title", "system.access_title"},
    SystemProfile::Wording{"permission.fda_desc", "system.access_note"},
    SystemProfile::Wording{"permission.open_settings", "privacy.change_folders"},
    SystemProfile::Wording{"action.grant_permissions", "settings.add_folder"},
};

constexpr std::array phraseRows{
    SystemProfile::Phrase{"System Settings → General → Login Items", "the startup settings of your desktop"},
};

// Where Flatpak tells a program of its sandbox (flatpak-metadata(5)).
constexpr const char* flatpakInformation = "/.flatpak-info";

}  // namespace

std::span<const SystemProfile::Wording> LinuxProfile::wordings() const noexcept {
  return usualWords;
}

std::span<const SystemProfile::Phrase> LinuxProfile::phrases() const noexcept {
  return phraseRows;
}

std::string_view LinuxProfile::sandbox() const {
  return ::access(flatpakInformation, F_OK) == 0 ? "Flatpak" : "";
}

}  // namespace orvane
