#include "platform/linux/LinuxProfile.h"

#include <array>

namespace orvane {
namespace {

using Named = SystemProfile::NamedFile;
using Where = Named::Where;
using Check = Named::Check;

// A package, which its site offers again.
constexpr Named package(std::string_view name) {
  return {Where::downloads, Check::lowerCase, name, "oldDownloads", "it is a package in a downloads folder"};
}
constexpr std::array namedRows{
    package("*.deb"),        package("*.rpm"),  package("*.run"),    package("*.flatpak"),
    package("*.flatpakref"), package("*.snap"), package("*.bundle"),
};

}  // namespace

std::span<const SystemProfile::NamedFile> LinuxProfile::namedFiles() const noexcept {
  return namedRows;
}

}  // namespace orvane
