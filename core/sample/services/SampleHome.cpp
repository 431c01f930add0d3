#include "core/sample/services/SampleHome.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/sample/services/SampleFiles.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace orvane {
namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t growth = 7919;  // bytes by which each file of a row is larger than the one before

// State and Trash, as the base folders are named where nothing is set (XDG Base Directories 0.8).
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> baseFolders{{
    {"XDG_CONFIG_HOME", ".config"},
    {"XDG_DATA_HOME", ".local/share"},
    {"XDG_STATE_HOME", ".local/state"},
    {"XDG_CACHE_HOME", ".cache"},
}};

std::string numbered(std::string_view place, int number) {
  std::string result(place);
  if (const auto at = result.find('#'); at != std::string::npos) result.replace(at, 1, std::to_string(number));
  return result;
}

void writeSample(const std::string& path, std::string_view content, std::int64_t bytes, std::int64_t written) {
  createFolders(std::string(parentPath(path)), 0755);
  const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
  if (!file) throwErrno();
  writeAll(file.get(), content);
  const std::array<timespec, 2> times{timespec{.tv_sec = written, .tv_nsec = 0}, {.tv_sec = written, .tv_nsec = 0}};
  if (::ftruncate(file.get(), bytes) != 0 || ::futimens(file.get(), times.data()) != 0) throwErrno();
}

bool isMissingOrEmpty(const std::string& folder) {
  std::error_code error;
  const auto entries = std::filesystem::directory_iterator(folder, error);
  if (error) return error == std::errc::no_such_file_or_directory;
  return entries == std::filesystem::directory_iterator();
}

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

std::string shellWord(std::string_view text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return result + "'";
}

std::string SampleHome::home() const {
  return joinPath(folder, "home");
}

SampleHome SampleHome::make(const std::string& folder) {
  if (!isMissingOrEmpty(folder)) {
    throw std::runtime_error(fmt::format("'{}' is there already: name a new folder", escapedForDisplay(folder)));
  }
  SampleHome result{.folder = folder};
  createFolders(joinPath(folder, "runtime"));
  createFolders(result.home(), 0755);
  const std::int64_t now = std::time(nullptr);
  for (const auto& row : sampleFiles) {
    for (int i = 0; i < row.count; ++i) {
      const auto place = numbered(row.place, i + 1);
      const auto bytes = row.bytes + i * growth;
      // A sparse file of the same size is another one by these first bytes alone.
      const auto content = fmt::format("sample of {}\n", row.contentOf.empty() ? place : row.contentOf);
      writeSample(joinPath(result.home(), place), content, bytes, now - (row.age + i) * secondsPerDay);
      ++result.files;
      result.bytes = checkedAdd(result.bytes, bytes);
    }
  }
  return result;
}

SampleHome::Environment SampleHome::environment() const {
  Environment result{{"HOME", home()}};
  for (const auto& [name, place] : baseFolders) result.emplace_back(name, joinPath(home(), place));
  const auto display = variable("WAYLAND_DISPLAY");
  if (!display.empty() && display.front() != '/') {
    result.emplace_back("WAYLAND_DISPLAY", joinPath(variable("XDG_RUNTIME_DIR"), display));
  }
  if (variable("XAUTHORITY").empty()) result.emplace_back("XAUTHORITY", joinPath(variable("HOME"), ".Xauthority"));
  result.emplace_back("XDG_RUNTIME_DIR", joinPath(folder, "runtime"));
  result.emplace_back("DBUS_SESSION_BUS_ADDRESS", "disabled:");
  return result;
}

std::string SampleHome::makeStarter(const std::string& program) const {
  std::string text =
      "#!/bin/sh\n# Starts the program in the sample home beside this file, with all of its state there.\n";
  for (const auto& [name, value] : environment()) {
    text += fmt::format("{}={}\nexport {}\n", name, shellWord(value), name);
  }
  text += fmt::format("cd \"$HOME\" && exec {} \"$@\"\n", shellWord(program));
  auto path = joinPath(folder, lastComponent(program));
  AtomicFile::replace(path, text, 0755);
  return path;
}

}  // namespace orvane
