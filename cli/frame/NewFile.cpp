#include "cli/frame/NewFile.h"

#include "cli/frame/FileArguments.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileStatus.h"

#include <fmt/format.h>

#include <stdexcept>
#include <system_error>

namespace orvane::cli {

std::optional<FileUrl> writeNewFile(Session& session, std::string_view option, const std::string& name,
                                    const std::function<void(const WriteText& write)>& produce) {
  if (name == "-") {
    produce([&](std::string_view text) { session.out().write(text); });
    return std::nullopt;
  }
  auto place = placeFromArgument(name);
  if (itemExists(place.path().c_str())) {
    throw UsageError(fmt::format("{} {}: it is there already; name a new file", option, shownPath(place)));
  }
  try {
    AtomicFile file(place.path());
    produce([&](std::string_view text) { file.write(text); });
    file.commit();
  } catch (const std::system_error& error) {
    throw std::runtime_error(fmt::format("{} {}: {}", option, shownPath(place), error.code().message()));
  }
  return place;
}

}  // namespace orvane::cli
