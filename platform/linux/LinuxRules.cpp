#include "platform/linux/LinuxProfile.h"

#include <array>

namespace orvane {
namespace {

constexpr std::array ruleRows{
    SystemProfile::SuggestedRule{"downloaded-packages", "suggestion.downloaded_packages",
                                 R"({"folderPath": "~/Downloads", "minimumAgeDays": 14,
            "fileExtensions": ["deb", "rpm", "run", "flatpak", "flatpakref", "snap", "bundle"]})",
                                 R"({"type": "moveToTrash"})"},
    SystemProfile::SuggestedRule{"old-caches", "suggestion.old_caches",
                                 R"({"categories": ["caches", "browserCaches"], "minimumAgeDays": 60})",
                                 R"({"type": "moveToTrash"})"},
    // Lists only: which builds take minutes and which take days is for their owner to say.
    SystemProfile::SuggestedRule{"idle-builds", "suggestion.idle_builds",
                                 R"({"categories": ["developerCaches"], "minimumAgeDays": 60})",
                                 R"({"type": "reviewOnly"})"},
};

}  // namespace

std::span<const SystemProfile::SuggestedRule> LinuxProfile::suggestedRules() const noexcept {
  return ruleRows;
}

}  // namespace orvane
