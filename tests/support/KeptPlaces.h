#pragma once

#include <vector>

namespace orvane::test {

// A file of each place that nothing may list or move, by its path in the home, and how `explain` names it.
struct Kept {
  const char* path;
  const char* content;
};

inline const std::vector<Kept> keptPlaces{
    {".local/share/keyrings/login.keyring", "key rings"},
    {".local/share/kwalletd/kdewallet.kwl", "key rings"},
    {".local/share/gnupg/pubring.kbx", "key rings"},
    {".gnupg/pubring.kbx", "keys of GnuPG"},
    {".password-store/bank.gpg", "passwords"},
    {".pki/nssdb/key4.db", "certificates"},
    {".netrc", "passwords"},
    {".pgpass", "passwords"},
    {".git-credentials", "passwords"},
    {".authinfo.gpg", "passwords"},
    {".kube/config", "cloud"},
    {".docker/config.json", "cloud"},
    {".azure/accessTokens.json", "cloud"},
    {".aws/credentials", "cloud"},
    {".cargo/credentials.toml", "registries"},
    {".npmrc", "registries"},
    {".pypirc", "registries"},
    {".mozilla/firefox/a.default/cookies.sqlite", "Firefox"},
    {".config/mozilla/firefox/a.default/cookies.sqlite", "Firefox"},
    {".thunderbird/a.default/Mail/Inbox", "Thunderbird"},
    {".local/share/evolution/mail/local/Inbox", "Evolution"},
    {".var/app/org.mozilla.firefox/.mozilla/firefox/key4.db", "Flatpak"},
    {".var/app/org.example.App/config/settings.ini", "Flatpak"},
    {"snap/firefox/common/.mozilla/firefox/key4.db", "Snap"},
    {".local/share/TelegramDesktop/tdata/key_datas", "Telegram"},
    {".local/share/Steam/steamapps/compatdata/730/pfx/user.reg", "Steam"},
    {".local/share/Steam/userdata/1/local.vdf", "Steam"},
    {"Games/SteamLibrary/steamapps/compatdata/730/pfx/x", "Steam"},
    {".local/share/flatpak/repo/objects/a", "store"},
    {".local/share/docker/overlay2/a", "store"},
    {".local/share/containers/storage/a", "store"},
    {".local/share/libvirt/images/a.qcow2", "store"},
    {".local/share/gnome-boxes/images/a", "store"},
    {".rustup/toolchains/stable/bin/rustc", "Rust"},
    {".wine/system.reg", "Wine"},
    {"Games/old/drive_c/game.exe", "Wine"},
    {"Games/old/system.reg", "Wine"},
    {"VirtualBox VMs/a/a.vdi", "virtual machines"},
    {".zshenv", "shell"},
    {".bash_aliases", "shell"},
    {".xprofile", "session"},
    {".Xauthority", "session"},
    {".bash_history", "history"},
    {".python_history", "history"},
    {".local/share/fish/fish_history", "history"},
    {".local/state/bash/history", "history"},
    {".config/autostart/a.desktop", "settings"},
};

}  // namespace orvane::test
