#include "core/uninstaller/LeftoverLocations.h"

#include "core/base/text/UnicodeText.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

constexpr std::array locations{
    LeftoverLocation{"Application Support", LeftoverKind::folder},
    LeftoverLocation{"Caches", LeftoverKind::folder},
    LeftoverLocation{"Containers", LeftoverKind::folder},
    LeftoverLocation{"Logs", LeftoverKind::folder},
    LeftoverLocation{"HTTPStorages", LeftoverKind::folder},
    LeftoverLocation{"Preferences", LeftoverKind::preferencesFile},
    LeftoverLocation{"Saved Application State", LeftoverKind::savedState},
};

// Fewer characters are too often a word of somebody else's.
constexpr std::int64_t minDisplayNameLength = 4;

// Lower case.
constexpr auto sharedFolderNames = std::to_array<std::string_view>({
    "addressbook",
    "adobe",
    "amazon",
    "apple",
    "apple computer",
    "application support",
    "atlassian",
    "autodesk",
    "avid",
    "blackmagic design",
    "bravesoftware",
    "caches",
    "callhistorydb",
    "callhistorytransactions",
    "clouddocs",
    "common",
    "contacts",
    "corel",
    "crashreporter",
    "data",
    "default",
    "developer",
    "diagnosticreports",
    "diskimages",
    "documents",
    "dock",
    "electronic arts",
    "epic",
    "facebook",
    "familycircle",
    "fileprovider",
    "fonts",
    "google",
    "ibm",
    "icdd",
    "icloud",
    "intel",
    "intuit",
    "java",
    "jetbrains",
    "knowledge",
    "library",
    "logitech",
    "logs",
    "metadata",
    "microsoft",
    "mobilesync",
    "mozilla",
    "networkserviceproxy",
    "nvidia",
    "opera software",
    "oracle",
    "paradox interactive",
    "plug-ins",
    "plugins",
    "preferences",
    "python",
    "qtproject",
    "quick look",
    "samsung",
    "shared",
    "shared data",
    "sony",
    "steinberg",
    "support",
    "syncservices",
    "temp",
    "unity",
    "updates",
    "user data",
    "users",
    "valve",
    "vmware",
    "yandex",
});

}  // namespace

std::span<const LeftoverLocation> leftoverLocations() noexcept {
  return locations;
}

std::string leftoverName(LeftoverKind kind, std::string_view identifier) {
  std::string name(identifier);
  switch (kind) {
    case LeftoverKind::folder:
      break;
    case LeftoverKind::preferencesFile:
      name += ".plist";
      break;
    case LeftoverKind::savedState:
      name += ".savedState";
      break;
  }
  return name;
}

bool isSafeLeftoverName(std::string_view name) noexcept {
  return !name.empty() && name != "." && name.find('/') == std::string_view::npos &&
         name.find("..") == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

bool isSharedFolderName(std::string_view name) {
  return std::find(sharedFolderNames.begin(), sharedFolderNames.end(), lowercased(trimmed(name))) !=
         sharedFolderNames.end();
}

bool isTellingDisplayName(std::string_view name) {
  return isSafeLeftoverName(name) && perceivedCharacterCount(name) >= minDisplayNameLength && !isSharedFolderName(name);
}

}  // namespace orvane
