#include "platform/linux/LinuxPreferences.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileLock.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/files/SetAside.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "platform/linux/ConfigurationFolder.h"

#include <fmt/format.h>

#include <cstdio>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

// Absent when the text is no JSON object.
std::optional<Json> decoded(std::string_view text) {
  try {
    auto json = parseJson(text);
    if (json.is_object()) return json;
  } catch (const JsonError&) {
    // Told by the absence.
  }
  return std::nullopt;
}

[[noreturn]] void refuse(const std::string& path, std::error_code reason) {
  throw std::system_error(reason, fmt::format("The preferences '{}' cannot be read", escapedForDisplay(path)));
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

// The stored preferences; absent when the file was read whole and is damaged. A link to a file that holds no
// preferences leads to somebody else's: std::system_error, as where nothing can be read.
std::optional<Json> storedIn(const std::string& path) {
  const auto text = contentOf(path);
  if (!text) return Json::object();
  auto json = decoded(*text);
  if (!json && isLink(path)) refuse(path, std::make_error_code(std::errc::invalid_argument));
  return json;
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
  if (!json) return std::nullopt;
  const auto found = json->find(key);
  if (found == json->end()) return std::nullopt;
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
  const bool isDamaged = !json;
  if (isDamaged) json = Json::object();
  const auto found = json->find(key);
  auto value = change(found == json->end() ? nullptr : &*found);
  if (isDamaged) setAside(path);
  AtomicFile::removeAbandoned(path);
  (*json)[key] = std::move(value);
  AtomicFile::replace(path, json->dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace orvane
