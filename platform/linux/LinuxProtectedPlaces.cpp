#include "platform/linux/LinuxProfile.h"

#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/base/text/AsciiText.h"
#include "platform/linux/OpenFiles.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace orvane {
namespace {

using Base = SystemProfile::Base;
using Never = SystemProfile::ProtectedPlace;

constexpr std::array protectedPlaceRows{
    // Secrets.
    Never{Base::data, "{keyrings,kwalletd,gnupg}", "key rings"},
    Never{Base::home, ".gnupg", "keys of GnuPG"},
    Never{Base::home, ".password-store", "passwords of pass"},
    Never{Base::home, ".pki", "certificates"},
    Never{Base::home, "{.netrc,.pgpass,.git-credentials,.authinfo*}", "passwords for servers"},
    Never{Base::home, "{.kube,.docker/config.json,.azure,.aws}", "logins of cloud services"},
    Never{Base::home, "{.cargo/credentials*,.npmrc,.pypirc}", "logins of package registries"},
    // Profiles and mail.
    Never{Base::home, ".mozilla", "profiles of Firefox"},
    Never{Base::config, "mozilla", "profiles of Firefox"},
    Never{Base::home, ".thunderbird", "mail of Thunderbird"},
    Never{Base::data, "evolution", "mail of Evolution"},
    Never{Base::home, ".var/app/*", "the profile of a Flatpak program", "cache"},
    Never{Base::home, "snap/*", "the profile of a Snap program", "common/.cache"},
    Never{Base::data, "TelegramDesktop", "the login of Telegram", "tdata/user_data*/{cache,media_cache}"},
    // Stores whose files must not move singly.
    Never{Base::data, "Steam/{steamapps/compatdata,userdata}", "saved games of Steam"},
    Never{Base::data, "{flatpak,docker,containers,libvirt,gnome-boxes}", "a store whose files belong together"},
    Never{Base::home, ".rustup/toolchains", "compilers of Rust"},
    Never{Base::home, "{.wine,.PlayOnLinux,.cxoffice}", "Windows programs under Wine"},
    Never{Base::data, "{wineprefixes,bottles}", "Windows programs under Wine"},
    Never{Base::home, "VirtualBox VMs", "virtual machines"},
    // Shell and session.
    Never{Base::home, "{.zshenv,.zprofile,.zlogin,.zlogout,.bash_aliases,.bash_login,.bash_logout}",
          "settings of the shell"},
    Never{Base::home,
          "{.xprofile,.xinitrc,.xsession,.xsessionrc,.Xauthority,.ICEauthority,.Xresources,.pam_environment}",
          "settings of the session"},
    Never{Base::home, "{.*_history,.histfile,.history,.lesshst,.viminfo}", "a history of commands"},
    Never{Base::data, "fish", "a history of commands"},
    Never{Base::state, "{*/history,*/*_history}", "a history of commands"},
    // Settings of programs where they are kept elsewhere than below ~/.config.
    Never{Base::config, "", "settings of programs"},
    // The system. The desktop mounts the user's disks below /run/media.
    Never{Base::root, "{boot,dev,efi,etc,lib,lib32,lib64,libx32,opt,ostree,proc,root,snap,srv,sys,usr,var}",
          "the system"},
    Never{Base::root, "run", "the system", "media"},
};

// Names that stand in Steam's and Wine's stores, which may be on any disk.
constexpr std::array storeNames{
    SystemProfile::ProtectedName{"compatdata", "saved games of Steam"},
    SystemProfile::ProtectedName{"drive_c", "Windows programs under Wine"},
    SystemProfile::ProtectedName{"dosdevices", "Windows programs under Wine"},
    SystemProfile::ProtectedName{"system.reg", "Windows programs under Wine"},
    SystemProfile::ProtectedName{"user.reg", "Windows programs under Wine"},
    SystemProfile::ProtectedName{"userdef.reg", "Windows programs under Wine"},
};

// Entries that only a store holds: a folder with one of these never moves whole.
constexpr std::array<std::string_view, 4> storeMarkers{"drive_c", "system.reg", "compatdata", "steamapps/compatdata"};

constexpr std::array<std::string_view, 7> diskImageExtensions{"qcow", "qcow2", "vdi", "vmdk", "vhd", "vhdx", "img"};

std::string systemFlatpaks() {
  const char* configured = std::getenv("FLATPAK_SYSTEM_DIR");
  return configured != nullptr && configured[0] == '/' ? configured : "/var/lib/flatpak";
}

}  // namespace

std::span<const SystemProfile::ProtectedPlace> LinuxProfile::protectedPlaces() const noexcept {
  return protectedPlaceRows;
}

std::span<const SystemProfile::ProtectedName> LinuxProfile::protectedNames() const noexcept {
  return storeNames;
}

bool LinuxProfile::isLeftOver(const std::string& path) const {
  if (parentPath(path) != joinPath(m_folders.home, ".var/app")) return false;
  const auto app = joinPath("app", lastComponent(path));
  return std::ranges::none_of(std::array{joinPath(m_folders.data, "flatpak"), systemFlatpaks()},
                              [&](const auto& installed) { return itemExists(joinPath(installed, app).c_str()); });
}

bool LinuxProfile::isStoreInUse(const std::string& path) const {
  const auto extension = splitName(lastComponent(path)).extension;
  const auto isIts = [&](std::string_view known) { return std::ranges::equal(extension, known, {}, lowerAscii); };
  if (std::ranges::any_of(diskImageExtensions, isIts)) return isOpenAnywhere(path);
  return std::ranges::any_of(storeMarkers, [&](auto marker) { return itemExists(joinPath(path, marker).c_str()); });
}

}  // namespace orvane
