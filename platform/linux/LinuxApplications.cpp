#include "platform/linux/LinuxApplications.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/files/UserFolders.h"
#include "platform/linux/DpkgPackages.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

using Kind = SystemApplication::Kind;

constexpr std::size_t magicOffset = 8;
constexpr std::string_view appImageMagic = "AI\x02";
constexpr std::string_view appImageEnding = ".appimage";
constexpr std::array<std::string_view, 5> iconSizes{"128x128", "256x256", "96x96", "64x64", "48x48"};
constexpr std::string_view releaseMark = "<release ";
constexpr std::string_view versionMark = "version=\"";
constexpr std::size_t maxMetainfoBytes = 1024 * 1024;

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> result;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::follow);
  while (const auto entry = reader ? reader->next() : std::nullopt) result.emplace_back(entry->name);
  std::ranges::sort(result);
  return result;
}

bool isFolder(const std::string& path) {
  const auto status = readFileStatus(AT_FDCWD, path.c_str());
  return status && status->type == FileType::directory;
}

// Types 1 and 2 of the AppImage format both have these bytes; only type 2 is made any more.
bool isAppImage(const std::string& file) {
  const auto status = readFileStatus(AT_FDCWD, file.c_str());
  if (!status || status->type != FileType::regular) return false;
  try {
    const auto descriptor = openRegularFile(file);
    std::array<char, 3> bytes{};
    return ::pread(descriptor.get(), bytes.data(), bytes.size(), magicOffset) == ssize_t{bytes.size()} &&
           std::string_view(bytes.data(), bytes.size()) == appImageMagic;
  } catch (const std::system_error&) {
    return false;
  }
}

bool isDigitOrDot(char sign) {
  return sign == '.' || (sign >= '0' && sign <= '9');
}

// "Tool-1.2.3-x86_64" tells its version between dashes.
std::string versionInName(std::string_view name) {
  while (!name.empty()) {
    const auto end = std::min(name.find_first_of("-_"), name.size());
    const auto part = name.substr(0, end);
    if (part.find('.') != part.npos && std::ranges::all_of(part, isDigitOrDot)) return std::string(part);
    name.remove_prefix(std::min(end + 1, name.size()));
  }
  return {};
}

// Of the newest release, which comes first.
std::string versionInMetainfo(const std::string& file) {
  std::string text;
  try {
    text = readFile(file, maxMetainfoBytes);
  } catch (const std::system_error&) {
    return {};
  }
  const auto release = text.find(releaseMark);
  const auto start = release == text.npos ? text.npos : text.find(versionMark, release);
  if (start == text.npos || start > text.find('>', release)) return {};
  const auto value = start + versionMark.size();
  return text.substr(value, text.find('"', value) - value);
}

std::string pictureIn(const std::string& icons, const std::string& name) {
  if (name.empty() || name.find('/') != name.npos) return {};
  for (const auto size : iconSizes) {
    auto file = joinPath(icons, "hicolor/" + std::string(size) + "/apps/" + name + ".png");
    if (itemExists(file.c_str())) return file;
  }
  return {};
}

// For a shell, in quotes where it has to be.
std::string shellWord(const std::string& text) {
  const bool isPlain = !text.empty() && std::ranges::all_of(text, [](char sign) {
    return (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z') || isDigitOrDot(sign) ||
           std::string_view("-_+/:@").find(sign) != std::string_view::npos;
  });
  if (isPlain) return text;
  std::string result = "'";
  for (const char sign : text) result += sign == '\'' ? "'\\''" : std::string(1, sign);
  return result + "'";
}

}  // namespace

// One look at all places.
class LinuxApplications::Listing {
 public:
  explicit Listing(const Folders& places)
      : m_places(places), m_applications(joinPath(places.user.data, "applications")) {}

  void findEntries() {
    m_userEntries = DesktopEntry::allIn(m_applications);
    m_systemEntries = DesktopEntry::allIn(system("usr/share/applications"));
    for (const auto& entry : m_systemEntries) m_systemNames.insert({entry.identifier, entry.windowClass});
    for (const auto& name : namesIn(joinPath(m_places.user.data, "flatpak/app"))) m_systemNames.insert(name);
    for (const auto& name : namesIn(systemFlatpaks())) m_systemNames.insert(name);
    m_systemNames.erase("");
  }

  void addAppImages() {
    for (const auto& folder : {joinPath(m_places.user.home, "Applications"), joinPath(m_places.user.home, ".local/bin"),
                               m_places.downloads}) {
      for (const auto& name : namesIn(folder)) addAppImage(joinPath(folder, name));
    }
    for (const auto& entry : m_userEntries) addAppImage(canonicalPath(entry.program));
  }

  void addUserEntries() {
    for (const auto& entry : m_userEntries) {
      if (m_taken.contains(entry.file)) continue;
      SystemApplication app = fromEntry(entry, Kind::desktopEntry);
      app.place = entry.file;
      app.isOrphan = isGone(entry.program);
      app.leftovers = leftoversOf({entry.identifier, entry.windowClass});
      m_found.push_back(std::move(app));
    }
  }

  void addFlatpaks() {
    addFlatpaksIn(joinPath(m_places.user.data, "flatpak"), "flatpak uninstall --user ");
    addFlatpaksIn(system("var/lib/flatpak"), "flatpak uninstall --system ");
    const auto data = joinPath(m_places.user.home, ".var/app");
    for (const auto& name : namesIn(data)) {
      const auto place = joinPath(data, name);
      if (name.starts_with('.') || !isFolder(place) || isFlatpak(name)) continue;
      SystemApplication app{.kind = Kind::flatpakData, .name = name, .identifier = name, .version = {}, .place = place};
      app.isOrphan = true;
      m_found.push_back(std::move(app));
    }
  }

  void addVersionedTools() {
    const auto tools = joinPath(m_places.user.data, "JetBrains");
    for (const auto& name : namesIn(tools)) {
      const auto digits = name.find_first_of("0123456789");
      const auto place = joinPath(tools, name);
      if (digits == 0 || digits == name.npos || name.find('.', digits) == name.npos || !isFolder(place)) continue;
      SystemApplication app{.kind = Kind::versionedTool,
                            .name = name.substr(0, digits),
                            .identifier = "JetBrains/" + name,
                            .version = name.substr(digits),
                            .place = place};
      for (const auto* folder : {&m_places.user.cache, &m_places.user.config, &m_places.user.state}) {
        app.leftovers.push_back(joinPath(*folder, app.identifier));
      }
      m_found.push_back(std::move(app));
    }
  }

  void addPackages() {
    const auto owners = dpkgOwnersIn("/usr/share/applications", system("var/lib/dpkg"));
    for (const auto& entry : m_systemEntries) {
      auto app = fromEntry(entry, Kind::package);
      app.place = entry.file;
      app.isProtected = true;
      app.bytes = 0;
      if (app.icon.empty()) app.icon = pictureIn(system("usr/share/icons"), entry.icon);
      const auto owner = owners.find(joinPath("/usr/share/applications", lastComponent(entry.file)));
      if (owner != owners.end()) {
        app.version = owner->second.version;
        app.bytes = owner->second.bytes;
        app.removalCommand = "sudo apt remove " + shellWord(owner->second.name);
      } else if (isFolder(system("usr/lib/sysimage/rpm")) || isFolder(system("var/lib/rpm"))) {
        app.removalCommand = "sudo rpm --erase \"$(rpm --query --file " + shellWord(entry.file) + ")\"";
      }
      m_found.push_back(std::move(app));
    }
  }

  [[nodiscard]] std::vector<SystemApplication> take() { return std::move(m_found); }

 private:
  [[nodiscard]] std::string system(std::string_view place) const { return joinPath(m_places.root, place); }
  [[nodiscard]] std::string systemFlatpaks() const { return system("var/lib/flatpak/app"); }

  [[nodiscard]] SystemApplication fromEntry(const DesktopEntry& entry, Kind kind) const {
    SystemApplication app{
        .kind = kind, .name = entry.name, .identifier = entry.identifier, .version = entry.version, .place = {}};
    app.icon = entry.icon.starts_with('/') ? entry.icon : pictureIn(joinPath(m_places.user.data, "icons"), entry.icon);
    return app;
  }

  void addAppImage(const std::string& file) {
    if (!file.starts_with('/') || !isAppImage(file) || !m_appImages.insert(canonicalPath(file)).second) return;
    const auto place = canonicalPath(file);
    auto name = std::string(lastComponent(file));
    if (name.size() > appImageEnding.size() &&
        std::ranges::equal(
            std::string_view(name).substr(name.size() - appImageEnding.size()), appImageEnding, {},
            [](char sign) { return sign >= 'A' && sign <= 'Z' ? static_cast<char>(sign + 32) : sign; })) {
      name.resize(name.size() - appImageEnding.size());
    }
    SystemApplication app{
        .kind = Kind::appImage, .name = name, .identifier = {}, .version = versionInName(name), .place = file};
    for (const auto& entry : m_userEntries) {
      if (entry.program.empty() || canonicalPath(entry.program) != place) continue;
      if (app.parts.empty()) {
        auto version = std::exchange(app.version, {});
        app = fromEntry(entry, Kind::appImage);
        app.place = file;
        if (app.version.empty()) app.version = std::move(version);
        app.leftovers = leftoversOf({entry.identifier});
      }
      app.parts.push_back(entry.file);
      m_taken.insert(entry.file);
    }
    m_found.push_back(std::move(app));
  }

  void addFlatpaksIn(const std::string& installation, const std::string& command) {
    const auto apps = joinPath(installation, "app");
    for (const auto& identifier : namesIn(apps)) {
      const auto place = joinPath(apps, identifier);
      const auto active = joinPath(place, "current/active");
      if (!itemExists(joinPath(active, "metadata").c_str())) continue;
      const auto exported = joinPath(active, "export/share");
      const auto entry = DesktopEntry::read(joinPath(exported, "applications/" + identifier + ".desktop"));
      SystemApplication app{
          .kind = Kind::flatpak,
          .name = entry ? entry->name : identifier,
          .identifier = identifier,
          .version = versionInMetainfo(joinPath(active, "files/share/metainfo/" + identifier + ".metainfo.xml")),
          .place = place};
      app.icon = pictureIn(joinPath(exported, "icons"), identifier);
      app.isProtected = true;
      app.removalCommand = command + shellWord(identifier);
      app.leftovers = {joinPath(m_places.user.home, ".var/app/" + identifier)};
      m_found.push_back(std::move(app));
    }
  }

  [[nodiscard]] bool isFlatpak(const std::string& identifier) const {
    const auto app = joinPath("flatpak/app", identifier);
    return itemExists(joinPath(m_places.user.data, app).c_str()) ||
           itemExists(joinPath(system("var/lib"), app).c_str()) || hasOtherInstallations();
  }
  // More installations may be set up, on any disk; of their programs nothing is taken for left over.
  [[nodiscard]] bool hasOtherInstallations() const {
    return std::ranges::any_of(namesIn(system("etc/flatpak/installations.d")),
                               [](const std::string& name) { return name.ends_with(".conf"); });
  }

  // A name by which another installed program goes leaves nothing over.
  [[nodiscard]] std::vector<std::string> leftoversOf(const std::set<std::string>& names) const {
    std::vector<std::string> result;
    const bool isAnothers = std::ranges::any_of(names, [&](const auto& name) { return m_systemNames.contains(name); });
    if (isAnothers) return result;
    const auto& user = m_places.user;
    for (const auto& name : names) {
      if (name.empty() || name.starts_with('.') || name.find('/') != name.npos) continue;
      for (const auto* folder : {&user.config, &user.cache, &user.data, &user.state}) {
        result.push_back(joinPath(*folder, name));
      }
    }
    return result;
  }

  // Only where that is certain: a program on a disk that is not there comes back with it.
  [[nodiscard]] bool isGone(const std::string& program) const {
    if (program.empty()) return false;
    if (isSameOrInside(program, m_places.user.home)) return !itemExists(program.c_str());
    if (program.starts_with('/')) {
      return presenceAt(program) == Presence::nothing && isFolder(std::string(parentPath(program)));
    }
    if (program.find('/') != program.npos) return false;
    const char* path = std::getenv("PATH");
    std::string folders = joinPath(m_places.user.home, ".local/bin") +
                          ":/usr/local/bin:/usr/bin:/bin:/usr/games:/usr/local/games:/snap/bin:";
    if (path != nullptr) folders += path;
    std::string_view rest = folders;
    while (!rest.empty()) {
      const auto end = std::min(rest.find(':'), rest.size());
      if (end > 0 && itemExists(joinPath(rest.substr(0, end), program).c_str())) return false;
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return true;
  }

  const Folders& m_places;
  std::string m_applications;
  std::vector<DesktopEntry> m_userEntries;
  std::vector<DesktopEntry> m_systemEntries;
  std::set<std::string> m_systemNames;  // identifiers and window classes of programs that Orvane cannot remove
  std::set<std::string> m_appImages;    // canonical paths
  std::set<std::string> m_taken;        // entries that belong to another row
  std::vector<SystemApplication> m_found;
};

LinuxApplications::Folders LinuxApplications::foldersFromEnvironment() {
  Folders places{.user = XdgFolders::fromEnvironment(), .downloads = expandedHome("~/Downloads")};
  return places;
}

std::vector<SystemApplication> LinuxApplications::list(const std::stop_token& stop) const {
  Listing listing(m_places);
  listing.findEntries();
  for (const auto step : {&Listing::addAppImages, &Listing::addUserEntries, &Listing::addFlatpaks,
                          &Listing::addVersionedTools, &Listing::addPackages}) {
    if (stop.stop_requested()) return {};
    (listing.*step)();
  }
  return listing.take();
}

}  // namespace orvane
