#pragma once

#include "core/base/files/FileUrl.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::cli {

class Session;

// Writes what `produce` hands over to the file that an option names, which must be new, or to the standard output where
// the name is "-". Returns the place of the file. Throws UsageError where something stands there, std::runtime_error
// where it cannot be written; nothing is left then.
using WriteText = std::function<void(std::string_view text)>;
std::optional<FileUrl> writeNewFile(Session& session, std::string_view option, const std::string& name,
                                    const std::function<void(const WriteText& write)>& produce);

}  // namespace orvane::cli
