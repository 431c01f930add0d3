#include "platform/linux/LinuxPreferences.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileLock.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "platform/linux/ConfigurationFolder.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

class DamagedFile : public std::error_category {
 public:
  [[nodiscard]] const char* name() const noexcept override { return "preferences"; }
  [[nodiscard]] std::string message(int /*code*/) const override {
    return "the file is damaged and stays as it is; mend it, or move it away to start with the defaults";
  }
};

[[noreturn]] void refuse(const std::string& path, std::error_code reason, std::string_view detail = {}) {
  throw std::system_error(
      reason, fmt::format("The preferences '{}' cannot be read{}", escapedForDisplay(path), escapedForDisplay(detail)));
}

bool isLink(const std::string& path) {
  const auto status = readPathStatus(path);
  return status && status->type == FileType::symbolicLink;
}

// Absent when there is no file. Throws std::system_error when there is one that cannot be read, or a link to nowhere.
std::optional<std::string> contentOf(const std::string& path) {
  try {
    return readFile(path, JsonLimits{}.bytes);
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::not_a_directory) return std::nullopt;
    if (error.code() == std::errc::no_such_file_or_directory && !isLink(path)) return std::nullopt;
    refuse(path, error.code());
  }
}

// The stored preferences. Throws std::system_error where the file is no JSON object: folders whose grant was taken back
// would count again if it were taken for an empty one.
Json storedIn(const std::string& path) {
  static const DamagedFile damaged;
  const auto text = contentOf(path);
  if (!text) return Json::object();
  std::string fault = "not a JSON object";
  try {
    auto json = parseJson(*text);
    if (json.is_object()) return json;
  } catch (const JsonError& error) {
    fault = error.what();
    // The place is enough; the rest is for programmers.
    fault.resize(std::min(fault.size(), fault.find(": syntax error")));
  }
  // A link leads to somebody else's file then, which nobody is to mend or move.
  if (isLink(path)) refuse(path, std::make_error_code(std::errc::invalid_argument));
  refuse(path, {1, damaged}, fmt::format(" ({})", fault));
}

}  // namespace

LinuxPreferences::LinuxPreferences(std::string path) : m_path(std::move(path)) {
  AtomicFile::removeAbandoned(canonicalPath(m_path), lockPath());
}

std::string LinuxPreferences::lockPath() const {
  return m_path + ".lock";
}

std::string LinuxPreferences::defaultPath() {
  return joinPath(configurationFolder(), "orvane/preferences.json");
}

std::optional<Json> LinuxPreferences::value(std::string_view key) const {
  const std::lock_guard guard(m_mutex);
  const auto json = storedIn(m_path);
  const auto found = json.find(key);
  if (found == json.end()) return std::nullopt;
  return *found;
}

void LinuxPreferences::setValue(std::string_view key, const Json& value) {
  update(key, [&](const Json*) { return value; });
}

void LinuxPreferences::update(std::string_view key, const std::function<Json(const Json*)>& change) {
  const std::lock_guard guard(m_mutex);
  createFolders(std::string(parentPath(m_path)));
  const auto lock = FileLock::acquire(lockPath());
  // Where the file is a link, as some keep their settings, what it points to is written.
  const std::string path = canonicalPath(m_path);
  auto json = storedIn(m_path);
  const auto found = json.find(key);
  auto value = change(found == json.end() ? nullptr : &*found);
  AtomicFile::removeAbandoned(path);
  json[key] = std::move(value);
  AtomicFile::replace(path, json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace orvane
