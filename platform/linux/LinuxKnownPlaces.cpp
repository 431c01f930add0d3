#include "core/base/files/FileDescriptor.h"
#include "platform/linux/LinuxProfile.h"
#include "platform/linux/OpenFiles.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <optional>

namespace orvane {
namespace {

using Base = SystemProfile::Base;
using Known = SystemProfile::KnownPlace;
using Unit = SystemProfile::Unit;
using Sign = SystemProfile::BusySign;

// Chromium and the programs made from it leave a link of this name while they run.
constexpr Sign chromiumSign{Base::config, "%/{SingletonLock,*/SingletonLock}"};
// Later versions keep their profiles in the folder of settings, where they made none before.
constexpr Sign firefoxSign{Base::home, "{.mozilla,.config/mozilla}/{firefox,firefox-esr}/*/{lock,.parentlock}"};
constexpr Sign editorSign{Base::config, "%/{SingletonLock,code.lock}"};
constexpr Sign jetBrainsSign{Base::config, "JetBrains/*/{.lock,.pid}"};
constexpr Sign steamSign{Base::home, ".steam/steam.pid"};
constexpr Sign cargoSign{Base::home, ".cargo/.package-cache"};

constexpr std::array places{
    Known{Base::data, "Trash/files/*", Unit::whole, "trash", "safe", "reason.trash", ""},

    // Browsers.
    Known{Base::cache, "{chromium,google-chrome*,BraveSoftware,microsoft-edge*,vivaldi*,opera*}", Unit::whole,
          "browserCaches", "safe", "place.downloaded", "", chromiumSign},
    Known{Base::cache, "mozilla", Unit::whole, "browserCaches", "safe", "place.downloaded", "Firefox", firefoxSign},
    Known{Base::cache, "{epiphany,falkon}", Unit::whole, "browserCaches", "safe", "place.downloaded", ""},
    Known{Base::config,
          "{chromium,google-chrome*,BraveSoftware/*,microsoft-edge*,vivaldi*,opera*}/*/"
          "{Cache,GPUCache,Code Cache,Dawn*Cache,Shared Dictionary}",
          Unit::whole, "browserCaches", "safe", "place.downloaded", "", chromiumSign},
    Known{Base::config,
          "{chromium,google-chrome*,BraveSoftware/*,microsoft-edge*,vivaldi*,opera*}/"
          "{GPUPersistentCache,ShaderCache,GrShaderCache,component_crx_cache}",
          Unit::whole, "browserCaches", "safe", "place.rebuilt", "", chromiumSign},
    Known{Base::config,
          "{chromium,google-chrome*,BraveSoftware/*,microsoft-edge*,vivaldi*,opera*}/*/Service Worker/CacheStorage",
          Unit::whole, "largeFiles", "review", "place.offline_pages", "", chromiumSign},

    // Messengers.
    Known{Base::config,
          "{Slack,discord,Signal,Element,teams-for-linux}/"
          "{Cache,Code Cache,GPUCache,logs,Service Worker/CacheStorage}",
          Unit::whole,
          "messagingMedia",
          "review",
          "place.server",
          "",
          {Base::config, "%/SingletonLock"}},
    Known{Base::config,
          "Microsoft/Microsoft Teams/{Cache,Code Cache,GPUCache,logs,Service Worker/CacheStorage}",
          Unit::whole,
          "messagingMedia",
          "review",
          "place.server",
          "Microsoft Teams",
          {Base::config, "%/*/SingletonLock"}},
    Known{Base::data, "TelegramDesktop/tdata/user_data*/{cache,media_cache}", Unit::whole, "messagingMedia", "review",
          "place.server", "Telegram"},

    // Editors.
    Known{Base::config,
          "{Code,Code - Insiders,VSCodium}/"
          "{Cache,CachedData,CachedExtensionVSIXs,GPUCache,Code Cache,logs}",
          Unit::whole, "caches", "safe", "place.rebuilt", "", editorSign},
    Known{Base::config, "{Code,Code - Insiders,VSCodium}/User/workspaceStorage/*", Unit::whole, "developerCaches",
          "review", "place.unsaved", "", editorSign},

    // Package managers and compilers.
    Known{Base::home, ".npm/_cacache", Unit::whole, "caches", "safe", "place.downloaded", "npm"},
    Known{Base::home, ".bun/install/cache", Unit::whole, "caches", "safe", "place.downloaded", "Bun"},
    Known{Base::home, ".cargo/{registry/cache,registry/src,git}", Unit::whole, "caches", "safe", "place.downloaded",
          "Cargo", cargoSign},
    Known{Base::home, ".rustup/downloads", Unit::whole, "caches", "safe", "place.downloaded", "rustup"},
    Known{Base::cache, "pip", Unit::whole, "caches", "safe", "place.downloaded", "pip"},
    Known{Base::cache, "uv", Unit::whole, "caches", "safe", "place.downloaded", "uv"},
    Known{Base::cache, "yarn", Unit::whole, "caches", "safe", "place.downloaded", "Yarn"},
    Known{Base::cache, "go-build", Unit::whole, "caches", "safe", "place.rebuilt", "Go"},
    Known{Base::cache, "ccache", Unit::whole, "caches", "safe", "place.rebuilt", "ccache"},
    Known{Base::cache, "sccache", Unit::whole, "caches", "safe", "place.rebuilt", "sccache"},
    Known{Base::cache, "bazel", Unit::whole, "caches", "safe", "place.rebuilt", "Bazel"},
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
          jetBrainsSign},

    Known{Base::home, ".gradle/{caches,wrapper/dists}", Unit::whole, "developerCaches", "review", "place.own_builds",
          "Gradle"},
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
          "Spotify"},

    // The desktop.
    Known{Base::cache, "{thumbnails,mesa_shader_cache*,fontconfig,gstreamer-1.0,tracker3}", Unit::whole, "caches",
          "safe", "place.rebuilt", ""},
    Known{Base::home, "{.thumbnails,.nv/GLCache}", Unit::whole, "caches", "safe", "place.rebuilt", ""},
    Known{Base::cache, "*", Unit::whole, "caches", "safe", "place.disposable", ""},
    Known{Base::home, ".var/app/*/cache", Unit::whole, "caches", "safe", "place.disposable", "", {}, 2},
    Known{Base::home, "snap/*/common/.cache", Unit::whole, "caches", "safe", "place.disposable", "", {}, 1},

    // Games.
    Known{Base::data, "Steam/{appcache/httpcache,config/htmlcache,depotcache,dumps,logs,steamapps/shadercache/*}",
          Unit::whole, "caches", "safe", "place.rebuilt", "Steam", steamSign},
    Known{Base::data, "Steam/steamapps/downloading/*", Unit::whole, "largeFiles", "review", "place.unfinished", "Steam",
          steamSign},

    // Logs that nobody writes any more.
    Known{Base::home, ".xsession-errors.old", Unit::file, "logs", "safe", "place.old_log", "X.Org"},
    Known{Base::data, "xorg/*.old", Unit::file, "logs", "safe", "place.old_log", "X.Org"},
    Known{Base::home, ".npm/_logs", Unit::whole, "logs", "safe", "place.old_log", "npm"},
    Known{Base::state, "{*.log.*,*/*.log.*,*/*/*.log.*}", Unit::file, "logs", "safe", "place.old_log", ""},
    Known{Base::state, "*/log", Unit::whole, "logs", "safe", "place.old_log", ""},
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

bool isRunning(pid_t process) noexcept {
  return process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
}

std::optional<pid_t> processIn(std::string_view text) noexcept {
  pid_t process = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), process);
  if (end.ec != std::errc() || process <= 0) return std::nullopt;
  return process;
}

// A link that names its process: "host-123", "127.0.1.1:+123".
bool linkNamesRunningProcess(const std::string& path) {
  std::array<char, 512> target{};
  const auto length = ::readlink(path.c_str(), target.data(), target.size());
  if (length <= 0) return false;
  const std::string_view text(target.data(), static_cast<std::size_t>(length));
  const auto process = processIn(text.substr(text.find_last_of("-+") + 1));
  return process && isRunning(*process);
}

bool fileNamesRunningProcess(int file) {
  std::array<char, 32> text{};
  const auto length = ::pread(file, text.data(), text.size(), 0);
  const auto process = processIn({text.data(), length > 0 ? static_cast<std::size_t>(length) : 0});
  return process && isRunning(*process);
}

}  // namespace

std::span<const SystemProfile::KnownPlace> LinuxProfile::knownPlaces() const noexcept {
  return places;
}

std::span<const SystemProfile::ProgramAlias> LinuxProfile::programAliases() const noexcept {
  return aliases;
}

std::span<const SystemProfile::BuildFolder> LinuxProfile::buildFolders() const noexcept {
  return builds;
}

bool LinuxProfile::isBusySign(const std::string& path) const {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return false;
  if (S_ISLNK(status.st_mode)) return linkNamesRunningProcess(path);
  if (!S_ISREG(status.st_mode)) return false;
  if (isLocked(path)) return true;
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
  if (!file) return false;
  // The lock, if it was free, goes with the descriptor.
  if (::flock(file.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) return true;
  return fileNamesRunningProcess(file.get());
}

}  // namespace orvane
