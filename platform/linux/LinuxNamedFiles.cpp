#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "platform/linux/LinuxProfile.h"

#include <elf.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
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
// As tools of the desktop name screenshots in some language; what else begins so has no day in its name.
constexpr Named screenshot(std::string_view name) {
  return {Where::anywhere, Check::dated, name, "screenshots", "its name is one that tools give to screenshots"};
}

constexpr std::array namedRows{
    package("*.deb"),
    package("*.rpm"),
    package("*.run"),
    package("*.flatpak"),
    package("*.flatpakref"),
    package("*.snap"),
    package("*.bundle"),

    // Desktops. Names that begin with "Screenshot" and the like need no row here.
    screenshot("Capture d'écran*"),
    screenshot("Captura desde*"),
    screenshot("Captura de tela*"),
    screenshot("Captura de ecrã*"),
    screenshot("Captură de ecran*"),
    screenshot("Schermata*"),
    screenshot("Schermafdruk*"),
    screenshot("Schermafbeelding*"),
    screenshot("Skärmbild*"),
    screenshot("Skærmbillede*"),
    screenshot("Skjermbilde*"),
    screenshot("Skjermdump*"),
    screenshot("Kuvakaappaus*"),
    screenshot("Zrzut ekranu*"),
    screenshot("Snímek obrazovky*"),
    screenshot("Snímka obrazovky*"),
    screenshot("Képernyőkép*"),
    screenshot("Ekran görüntüsü*"),
    screenshot("Ekran Görüntüsü*"),
    screenshot("Снимок экрана*"),
    screenshot("Знімок екрана*"),
    screenshot("Στιγμιότυπο*"),
    screenshot("截图*"),
    screenshot("屏幕截图*"),
    screenshot("螢幕擷圖*"),
    screenshot("螢幕快照*"),
    screenshot("畫面快照*"),
    // Tools.
    screenshot("flameshot*"),
    screenshot("Flameshot*"),
    screenshot("ksnip_*"),
    screenshot("*_scrot.*"),
    screenshot("*_grim.*"),
    screenshot("swappy-*"),
    Named{Where::screenshots, Check::beginsWithTime, "*", "screenshots",
          "its name is a time, and its folder is one of screenshots"},
    Named{Where::screencasts, Check::lowerCase, "*", "screenshots", "it lies where the desktop keeps screencasts"},

    Named{Where::anywhere, Check::coreDump, "core.*", "largeFiles", "it is the memory of a program that crashed"},
};

constexpr std::array<std::string_view, 22> screenshotFolderNames{
    "Screenshots",        "screenshots",       "Bildschirmfotos",
    "Captures d’écran",   "Captures d'écran",  "Capturas de pantalla",
    "Capturas",           "Schermate",         "Capturas de tela",
    "Capturas de ecrã",   "Schermafdrukken",   "Skärmbilder",
    "Skærmbilleder",      "Skjermbilder",      "Kuvakaappaukset",
    "Zrzuty ekranu",      "Ekran Görüntüleri", "Снимки экрана",
    "スクリーンショット", "스크린샷",          "截图",
    "螢幕擷圖",
};

}  // namespace

std::span<const SystemProfile::NamedFile> LinuxProfile::namedFiles() const noexcept {
  return namedRows;
}

std::span<const std::string_view> LinuxProfile::screenshotFolders() const noexcept {
  return screenshotFolderNames;
}

bool LinuxProfile::isCoreDump(const std::string& path) const {
  constexpr std::string_view beginning = "core.";
  const auto name = lastComponent(path);
  if (!name.starts_with(beginning) || name.size() == beginning.size()) return false;
  if (name.find_first_not_of("0123456789", beginning.size()) != std::string_view::npos) return false;
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW));
  if (!file) return false;
  // Up to the type, which stands at the same place in files of 32 and of 64 bits.
  std::array<unsigned char, EI_NIDENT + 2> head{};
  if (::pread(file.get(), head.data(), head.size(), 0) != static_cast<ssize_t>(head.size())) return false;
  constexpr std::array<unsigned char, SELFMAG> magic{ELFMAG0, ELFMAG1, ELFMAG2, ELFMAG3};
  if (!std::equal(magic.begin(), magic.end(), head.begin())) return false;
  const bool isBigEndian = head[EI_DATA] == ELFDATA2MSB;
  const unsigned type =
      isBigEndian ? head[EI_NIDENT] * 256U + head[EI_NIDENT + 1] : head[EI_NIDENT + 1] * 256U + head[EI_NIDENT];
  return type == ET_CORE;
}

}  // namespace orvane
