#include "platform/linux/DpkgPackages.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>

#include <algorithm>
#include <charconv>
#include <system_error>

namespace orvane {
namespace {

constexpr std::size_t maxListBytes = 64UL * 1024 * 1024;
constexpr std::size_t maxStatusBytes = 256UL * 1024 * 1024;
constexpr std::string_view listEnding = ".list";
constexpr std::int64_t unit = 1024;  // of Installed-Size

std::string contentOf(const std::string& file, std::size_t limit) {
  try {
    return readFile(file, limit);
  } catch (const std::system_error&) {
    return {};
  }
}

// Calls `visit(line)` for each line.
template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    visit(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

// By name of the package, with its architecture where several may be installed.
std::unordered_map<std::string, DpkgPackage> packagesIn(const std::string& statusFile) {
  std::unordered_map<std::string, DpkgPackage> result;
  DpkgPackage package;
  std::string architecture;
  const auto finish = [&] {
    if (!package.name.empty()) {
      result.insert_or_assign(package.name + ":" + architecture, package);
      result.insert_or_assign(package.name, std::move(package));
    }
    package = {};
  };
  forEachLine(contentOf(statusFile, maxStatusBytes), [&](std::string_view line) {
    const auto value = [&](std::string_view key) { return line.substr(std::min(key.size(), line.size())); };
    if (line.empty()) finish();
    if (line.starts_with("Package: ")) package.name = value("Package: ");
    if (line.starts_with("Version: ")) package.version = value("Version: ");
    if (line.starts_with("Architecture: ")) architecture = value("Architecture: ");
    if (line.starts_with("Installed-Size: ")) {
      const auto digits = value("Installed-Size: ");
      std::int64_t count = 0;
      std::from_chars(digits.data(), digits.data() + digits.size(), count);
      package.bytes = std::clamp<std::int64_t>(count, 0, INT64_MAX / unit) * unit;
    }
  });
  finish();
  return result;
}

}  // namespace

std::unordered_map<std::string, DpkgPackage> dpkgOwnersIn(std::string_view folder, const std::string& database) {
  std::unordered_map<std::string, DpkgPackage> result;
  const auto lists = joinPath(database, "info");
  auto reader = DirectoryReader::open(AT_FDCWD, lists.c_str(), DirectoryReader::Links::follow);
  if (!reader) return result;
  const auto packages = packagesIn(joinPath(database, "status"));
  const auto start = joinPath(folder, "");
  while (const auto entry = reader->next()) {
    std::string_view name = entry->name;
    if (!name.ends_with(listEnding)) continue;
    name.remove_suffix(listEnding.size());
    const auto package = packages.find(std::string(name));
    if (package == packages.end()) continue;
    const auto list = contentOf(joinPath(lists, entry->name), maxListBytes);
    if (list.find(start) == std::string::npos) continue;
    forEachLine(list, [&](std::string_view line) {
      if (line.size() > start.size() && line.starts_with(start)) result.emplace(line, package->second);
    });
  }
  return result;
}

}  // namespace orvane
