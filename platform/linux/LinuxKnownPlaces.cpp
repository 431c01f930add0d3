#include "platform/linux/LinuxProfile.h"

#include <array>

namespace orvane {
namespace {

using Base = SystemProfile::Base;
using Known = SystemProfile::KnownPlace;
using Unit = SystemProfile::Unit;
using Sign = SystemProfile::BusySign;

// Chromium and the programs made from it leave a link of this name while they run.
constexpr std::array chromiumSigns{Sign{Base::config, "%/{SingletonLock,*/SingletonLock}"}};
// Profiles are where the list says, mostly beside it. Later versions keep both in the folder of settings, where they
// made none before.
constexpr std::array firefoxSigns{
    Sign{Base::home, ".mozilla/{firefox,firefox-esr}/*/{lock,.parentlock}"},
    Sign{Base::home, ".mozilla/{firefox,firefox-esr}/profiles.ini", Sign::Check::profiles},
    Sign{Base::config, "mozilla/{firefox,firefox-esr}/*/{lock,.parentlock}"},
    Sign{Base::config, "mozilla/{firefox,firefox-esr}/profiles.ini", Sign::Check::profiles},
};
constexpr std::array messengerSigns{Sign{Base::config, "%/SingletonLock"}};
constexpr std::array teamsSigns{Sign{Base::config, "%/*/SingletonLock"}};
constexpr std::array editorSigns{Sign{Base::config, "%/{SingletonLock,code.lock}"}};
constexpr std::array jetBrainsSigns{Sign{Base::config, "JetBrains/*/{.lock,.pid}"}};
constexpr std::array steamSigns{Sign{Base::home, ".steam/steam.pid"}};
constexpr std::array cargoSigns{Sign{Base::home, ".cargo/.package-cache"}};
constexpr std::array uvSigns{Sign{Base::cache, "uv/.lock"}};
// Both leave a server running for some hours.
constexpr std::array bazelSigns{Sign{Base::cache, "bazel/_bazel_*/*/{lock,server/server.pid.txt}"}};
constexpr std::array gradleSigns{Sign{Base::home, ".gradle/caches/{*.lock,*/*.lock,*/*/*.lock}"}};
constexpr std::array flatpakSigns{Sign{Base::runtime, ".flatpak/*/info", Sign::Check::sandbox}};
constexpr std::array snapSigns{Sign{Base::root, "proc/*/cgroup", Sign::Check::groups}};

constexpr std::array knownPlaceRows{
    Known{Base::data, "Trash/files/*", Unit::whole, "trash", "safe", "reason.trash", ""},

    // Browsers.
    Known{Base::cache, "{chromium,google-chrome*,BraveSoftware,microsoft-edge*,vivaldi*,opera*}", Unit::whole,
          "browserCaches", "safe", "place.downloaded", "", chromiumSigns},
    Known{Base::cache, "mozilla", Unit::whole, "browserCaches", "safe", "place.downloaded", "Firefox", firefoxSigns},
    Known{Base::cache, "{epiphany,falkon}", Unit::whole, "browserCaches", "safe", "place.downloaded", ""},
    Known{Base::config,
          "{chromium,google-chrome*,BraveSoftware/*,microsoft-edge*,vivaldi*,opera*}/*/"
          "{Cache,GPUCache,Code Cache,Dawn*Cache,Shared Dictionary}",
          Unit::whole, "browserCaches", "safe", "place.downloaded", "", chromiumSigns},
    Known{Base::config,
          "{chromium,google-chrome*,BraveSoftware/*,microsoft-edge*,vivaldi*,opera*}/"
          "{GPUPersistentCache,ShaderCache,GrShaderCache,component_crx_cache}",
          Unit::whole, "browserCaches", "safe", "place.rebuilt", "", chromiumSigns},
    Known{Base::config,
          "{chromium,google-chrome*,BraveSoftware/*,microsoft-edge*,vivaldi*,opera*}/*/Service Worker/CacheStorage",
          Unit::whole, "largeFiles", "review", "place.offline_pages", "", chromiumSigns},

    // Messengers.
    Known{Base::config,
          "{Slack,discord,Signal,Element,teams-for-linux}/"
          "{Cache,Code Cache,GPUCache,logs,Service Worker/CacheStorage}",
          Unit::whole, "messagingMedia", "review", "place.server", "", messengerSigns},
    Known{Base::config, "Microsoft/Microsoft Teams/{Cache,Code Cache,GPUCache,logs,Service Worker/CacheStorage}",
          Unit::whole, "messagingMedia", "review", "place.server", "Microsoft Teams", teamsSigns},
    Known{Base::data, "TelegramDesktop/tdata/user_data*/{cache,media_cache}", Unit::whole, "messagingMedia", "review",
          "place.server", "Telegram"},

    // Editors.
    Known{Base::config,
          "{Code,Code - Insiders,VSCodium}/"
          "{Cache,CachedData,CachedExtensionVSIXs,GPUCache,Code Cache,logs}",
          Unit::whole, "caches", "safe", "place.rebuilt", "", editorSigns},
    Known{Base::config, "Code*/User/workspaceStorage/*", Unit::whole, "developerCaches", "review", "place.unsaved", "",
          editorSigns},

    // Package managers and compilers.
    Known{Base::home, ".npm/_cacache", Unit::whole, "caches", "safe", "place.downloaded", "npm"},
    Known{Base::home, ".bun/install/cache", Unit::whole, "caches", "safe", "place.downloaded", "Bun"},
    Known{Base::home, ".cargo/{registry/cache,registry/src,git}", Unit::whole, "caches", "safe", "place.downloaded",
          "Cargo", cargoSigns},
    Known{Base::home, ".rustup/downloads", Unit::whole, "caches", "safe", "place.downloaded", "rustup"},
    Known{Base::cache, "pip", Unit::whole, "caches", "safe", "place.downloaded", "pip"},
    Known{Base::cache, "uv", Unit::whole, "caches", "safe", "place.downloaded", "uv", uvSigns},
    Known{Base::cache, "yarn", Unit::whole, "caches", "safe", "place.downloaded", "Yarn"},
    Known{Base::cache, "go-build", Unit::whole, "caches", "safe", "place.rebuilt", "Go"},
    Known{Base::cache, "ccache", Unit::whole, "caches", "safe", "place.rebuilt", "ccache"},
    Known{Base::cache, "sccache", Unit::whole, "caches", "safe", "place.rebuilt", "sccache"},
    Known{Base::cache, "bazel", Unit::whole, "caches", "safe", "place.rebuilt", "Bazel", bazelSigns},
    Known{Base::cache, "composer", Unit::whole, "caches", "safe", "place.downloaded", "Composer"},
    Known{Base::cache, "Homebrew", Unit::whole, "caches", "safe", "place.downloaded", "Homebrew"},
    Known{Base::data, "NuGet/v3-cache", Unit::whole, "caches", "safe", "place.downloaded", "NuGet"},

    Known{Base::cache, "ms-playwright/*", Unit::whole, "developerCaches", "review", "place.long_download",
          "Playwright"},
    Known{Base::cache, "puppeteer/*", Unit::whole, "developerCaches", "review", "place.long_download", "Puppeteer"},
    Known{Base::cache, "Cypress/*", Unit::whole, "developerCaches", "review", "place.long_download", "Cypress"},
    Known{Base::cache, "pypoetry/virtualenvs/*", Unit::whole, "developerCaches", "review", "place.long_download",
          "Poetry"},
    Known{Base::cache, "JetBrains/*", Unit::whole, "developerCaches", "review", "place.slow_index", "JetBrains",
          jetBrainsSigns},

    Known{Base::home, ".gradle/{caches,wrapper/dists}", Unit::whole, "developerCaches", "review", "place.own_builds",
          "Gradle", gradleSigns},
    Known{Base::home, ".m2/repository", Unit::whole, "developerCaches", "review", "place.own_builds", "Maven"},
    Known{Base::home, ".nuget/packages", Unit::whole, "developerCaches", "review", "place.own_builds", "NuGet"},
    Known{Base::home, "go/pkg/mod", Unit::whole, "developerCaches", "review", "place.own_builds", "Go"},
    Known{Base::data, "pnpm/store", Unit::whole, "developerCaches", "review", "place.own_builds", "pnpm"},
    Known{Base::home, "{miniconda3,anaconda3}/pkgs", Unit::whole, "developerCaches", "review", "place.own_builds",
          "conda"},
    Known{Base::home, ".conan*/p", Unit::whole, "developerCaches", "review", "place.own_builds", "Conan"},
    Known{Base::cache, "vcpkg", Unit::whole, "developerCaches", "review", "place.own_builds", "vcpkg"},

    // Models and media.
    Known{Base::cache, "huggingface/hub/models--*", Unit::whole, "largeFiles", "review", "place.long_download",
          "Hugging Face"},
    Known{Base::cache, "torch/hub", Unit::whole, "largeFiles", "review", "place.long_download", "PyTorch"},
    Known{Base::home, ".ollama/models", Unit::whole, "largeFiles", "review", "place.long_download", "Ollama"},
    Known{Base::cache, "spotify", Unit::whole, "largeFiles", "review", "place.offline_media", "Spotify"},
    Known{Base::home, ".var/app/com.spotify.Client/cache", Unit::whole, "largeFiles", "review", "place.offline_media",
          "Spotify", flatpakSigns, 2},

    // The desktop.
    Known{Base::cache, "thumbnails", Unit::whole, "caches", "safe", "place.file_manager", ""},
    Known{Base::home, ".thumbnails", Unit::whole, "caches", "safe", "place.file_manager", ""},
    Known{Base::cache, "mesa_shader_cache*", Unit::whole, "caches", "safe", "place.graphics_driver", ""},
    Known{Base::home, ".nv/GLCache", Unit::whole, "caches", "safe", "place.graphics_driver", ""},
    Known{Base::cache, "{fontconfig,gstreamer-1.0}", Unit::whole, "caches", "safe", "place.desktop", ""},
    Known{Base::cache, "tracker3", Unit::whole, "caches", "safe", "place.desktop_search", ""},
    Known{Base::cache, "*", Unit::whole, "caches", "safe", "place.disposable", ""},
    Known{Base::home, ".var/app/*/cache", Unit::whole, "caches", "safe", "place.disposable", "", flatpakSigns, 2},
    Known{Base::home, "snap/*/common/.cache", Unit::whole, "caches", "safe", "place.disposable", "", snapSigns, 1},

    // Games.
    Known{Base::data, "Steam/{appcache/httpcache,config/htmlcache,depotcache,dumps,logs,steamapps/shadercache/*}",
          Unit::whole, "caches", "safe", "place.rebuilt", "Steam", steamSigns},
    Known{Base::data, "Steam/steamapps/downloading/*", Unit::whole, "largeFiles", "review", "place.unfinished", "Steam",
          steamSigns},

    // Logs that nobody writes any more.
    Known{Base::home, ".xsession-errors.old", Unit::file, "logs", "safe", "place.old_log", "X.Org"},
    Known{Base::data, "xorg/*.old", Unit::file, "logs", "safe", "place.old_log", "X.Org"},
    Known{Base::home, ".npm/_logs", Unit::whole, "logs", "safe", "place.old_log", "npm"},
    Known{Base::state, "{,*/,*/*/}*.log.[0-9]*", Unit::file, "logs", "safe", "place.old_log", ""},
    Known{Base::state, "*/log", Unit::whole, "logs", "safe", "place.old_log", ""},
};

// The first row that fits decides.
constexpr std::array titles{
    SystemProfile::ProgramTitle{"chromium", "Chromium"},
    SystemProfile::ProgramTitle{"google-chrome-beta", "Google Chrome Beta"},
    SystemProfile::ProgramTitle{"google-chrome*", "Google Chrome"},
    SystemProfile::ProgramTitle{"BraveSoftware", "Brave"},
    SystemProfile::ProgramTitle{"microsoft-edge*", "Microsoft Edge"},
    SystemProfile::ProgramTitle{"vivaldi*", "Vivaldi"},
    SystemProfile::ProgramTitle{"opera*", "Opera"},
    SystemProfile::ProgramTitle{"epiphany", "GNOME Web"},
    SystemProfile::ProgramTitle{"falkon", "Falkon"},
    SystemProfile::ProgramTitle{"discord", "Discord"},
    SystemProfile::ProgramTitle{"teams-for-linux", "Teams for Linux"},
    SystemProfile::ProgramTitle{"Code", "Visual Studio Code"},
    SystemProfile::ProgramTitle{"Code - Insiders", "Visual Studio Code Insiders"},
};

constexpr std::array aliases{
    SystemProfile::ProgramAlias{"chrome", "google-chrome"},
    SystemProfile::ProgramAlias{"brave", "BraveSoftware"},
    SystemProfile::ProgramAlias{"edge", "microsoft-edge"},
    SystemProfile::ProgramAlias{"gnome web", "epiphany"},
    SystemProfile::ProgramAlias{"teams", "Microsoft Teams"},
    SystemProfile::ProgramAlias{"teams", "teams-for-linux"},
    SystemProfile::ProgramAlias{"vscode", "Code"},
    SystemProfile::ProgramAlias{"vs code", "Code"},
    SystemProfile::ProgramAlias{"visual studio code", "Code"},
    SystemProfile::ProgramAlias{"intellij", "JetBrains"},
    SystemProfile::ProgramAlias{"pycharm", "JetBrains"},
    SystemProfile::ProgramAlias{"golang", "Go"},
    SystemProfile::ProgramAlias{"huggingface", "Hugging Face"},
    SystemProfile::ProgramAlias{"anaconda", "conda"},
    SystemProfile::ProgramAlias{"miniconda", "conda"},
    SystemProfile::ProgramAlias{"thumbnails", "thumbnails", true},
    SystemProfile::ProgramAlias{"thumbnails", ".thumbnails", true},
    SystemProfile::ProgramAlias{"thumbnail", "thumbnails", true},
    SystemProfile::ProgramAlias{"mesa", "mesa_shader_cache", true},
};

constexpr std::array builds{
    SystemProfile::BuildFolder{.name = "node_modules", .beside = "package.json"},
    SystemProfile::BuildFolder{.name = "target", .beside = "Cargo.toml"},
    SystemProfile::BuildFolder{.name = "build", .beside = "{build.gradle,build.gradle.kts}"},
    SystemProfile::BuildFolder{.name = ".gradle", .beside = "{build.gradle,build.gradle.kts}"},
    SystemProfile::BuildFolder{.name = ".venv", .inside = "pyvenv.cfg"},
    SystemProfile::BuildFolder{.name = "venv", .inside = "pyvenv.cfg"},
    SystemProfile::BuildFolder{.name = ".next", .beside = "package.json", .mentions = "\"next\""},
    SystemProfile::BuildFolder{.name = ".nuxt", .beside = "package.json", .mentions = "\"nuxt\""},
    SystemProfile::BuildFolder{
        .name = "dist", .beside = "package.json", .mentions = "\"vite\",\"webpack\",\"rollup\",\"parcel\",\"esbuild\""},
    SystemProfile::BuildFolder{.name = "__pycache__"},
    SystemProfile::BuildFolder{.name = ".tox"},
    SystemProfile::BuildFolder{.name = ".mypy_cache"},
    SystemProfile::BuildFolder{.name = ".pytest_cache"},
    // The cache directory tagging standard.
    SystemProfile::BuildFolder{
        .name = "*", .inside = "CACHEDIR.TAG", .mentions = "Signature: 8a477f597d28d172789f06886806bc55"},
};

}  // namespace

std::span<const SystemProfile::KnownPlace> LinuxProfile::knownPlaces() const noexcept {
  return knownPlaceRows;
}

std::span<const SystemProfile::ProgramTitle> LinuxProfile::programTitles() const noexcept {
  return titles;
}

std::span<const SystemProfile::ProgramAlias> LinuxProfile::programAliases() const noexcept {
  return aliases;
}

std::span<const SystemProfile::BuildFolder> LinuxProfile::buildFolders() const noexcept {
  return builds;
}

}  // namespace orvane
