#include "platform/linux/LinuxPreferences.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileLock.h"
#include "core/base/files/FreeName.h"
#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"
#include "core/base/values/Calendar.h"
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

// Absent when there is no file. Throws std::system_error when there is one that cannot be read.
std::optional<std::string> contentOf(const std::string& path) {
  try {
    return readFile(path);
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::no_such_file_or_directory) return std::nullopt;
    throw;
  }
}

void setAside(const std::string& path) {
  const FileUrl wanted(fmt::format("{}.damaged-{}", path, localTimestamp(ReferenceClock::now())));
  const auto aside = freeUrl(wanted, NumberingStyle::plain);
  if (std::rename(path.c_str(), aside.path().c_str()) != 0) throwErrno();
}

}  // namespace

LinuxPreferences::LinuxPreferences(std::string path) : m_path(std::move(path)) {}

std::string LinuxPreferences::defaultPath() {
  return joinPath(configurationFolder(), "orvane/preferences.json");
}

std::optional<Json> LinuxPreferences::value(std::string_view key) const {
  const std::lock_guard guard(m_mutex);
  try {
    const auto text = contentOf(m_path);
    const auto json = text ? decoded(*text) : std::nullopt;
    if (!json) return std::nullopt;
    const auto found = json->find(key);
    if (found == json->end()) return std::nullopt;
    return *found;
  } catch (const std::system_error&) {
    // What cannot be read is as good as not set; a write will say why.
    return std::nullopt;
  }
}

void LinuxPreferences::setValue(std::string_view key, const Json& value) {
  update(key, [&](const Json*) { return value; });
}

void LinuxPreferences::update(std::string_view key, const std::function<Json(const Json*)>& change) {
  const std::lock_guard guard(m_mutex);
  createFolders(std::string(parentPath(m_path)));
  const auto lock = FileLock::acquire(m_path + ".lock");
  // Where the file is a link, as some keep their settings, what it points to is written.
  const std::string path = canonicalPath(m_path);
  const auto text = contentOf(path);
  auto json = text ? decoded(*text) : Json::object();
  const bool isDamaged = !json;
  if (isDamaged) json = Json::object();
  const auto found = json->find(key);
  auto value = change(found == json->end() ? nullptr : &*found);
  if (isDamaged) setAside(path);
  (*json)[key] = std::move(value);
  AtomicFile::replace(path, json->dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace orvane
